#include "VelPref/Validator.h"

#include <gmock/gmock.h>

#include <memory>

namespace
{

class Recording : public VelPref::Validator
{
public:
    explicit Recording(bool& deleted) : m_deleted(deleted) {}
    ~Recording() override { m_deleted = true; }
    bool Validate(VelUtils::Any&, const VelUtils::Any&) const override { return true; }

private:
    bool& m_deleted;
};

} // namespace

TEST(Validator, IsDeletedThroughItsInterface)
{
    bool deleted = false;
    std::unique_ptr<VelPref::Validator> validator = std::make_unique<Recording>(deleted);
    validator.reset();
    EXPECT_TRUE(deleted);
}
