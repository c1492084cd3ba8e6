// What a sheet keeps in memory, and takes while it is read: bytes and blocks of malloc, the headers of the blocks
// included. The program stands between itself and malloc of the GNU C library; with another library it has no rows.

#include "PeerStyles.h"
#include "Rows.h"
#include "SheetDocument.h"

#include <VelUtils/Stream.h>
#include <styles/Styles.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>

#ifdef __GLIBC__

#    include <cerrno>
#    include <malloc.h>

namespace
{

/// What is in use. The program has one thread.
struct Usage
{
    std::size_t bytes = 0;
    std::size_t blocks = 0;
    std::size_t peak = 0; ///< the most bytes that there ever were
};

constinit Usage usage;

/// The room that a block takes: what can be used of it and the header before it.
std::size_t RoomOf(void* block)
{
    return malloc_usable_size(block) + sizeof(std::size_t);
}

void* Enter(void* block)
{
    if (block != nullptr)
    {
        usage.bytes += RoomOf(block);
        ++usage.blocks;
        usage.peak = std::max(usage.peak, usage.bytes);
    }
    return block;
}

void Leave(void* block)
{
    if (block != nullptr)
    {
        usage.bytes -= RoomOf(block);
        --usage.blocks;
    }
}

} // namespace

extern "C"
{
    // The library's own names for what is replaced here.
    void* __libc_malloc(std::size_t size);
    void* __libc_calloc(std::size_t count, std::size_t size);
    void* __libc_realloc(void* block, std::size_t size);
    void* __libc_memalign(std::size_t alignment, std::size_t size);
    void __libc_free(void* block);

    void* malloc(std::size_t size) noexcept
    {
        return Enter(__libc_malloc(size));
    }

    void* calloc(std::size_t count, std::size_t size) noexcept
    {
        return Enter(__libc_calloc(count, size));
    }

    void* realloc(void* block, std::size_t size) noexcept
    {
        const std::size_t before = block != nullptr ? RoomOf(block) : 0;
        void* moved = __libc_realloc(block, size);
        if (moved == nullptr && size > 0)
        {
            return nullptr; // the old block is still there
        }
        usage.bytes -= before;
        usage.blocks -= block != nullptr ? 1 : 0;
        return Enter(moved);
    }

    void* memalign(std::size_t alignment, std::size_t size) noexcept
    {
        return Enter(__libc_memalign(alignment, size));
    }

    void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept
    {
        return memalign(alignment, size);
    }

    int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept
    {
        void* made = memalign(alignment, size);
        if (made == nullptr)
        {
            return ENOMEM;
        }
        *block = made;
        return 0;
    }

    void free(void* block) noexcept
    {
        Leave(block);
        __libc_free(block);
    }
}

namespace
{

constexpr std::size_t kStyles = 10'000;

/// Makes a holder of the document: what stays as long as the result does.
using Reader = std::function<std::shared_ptr<void>(const std::string&)>;

struct Reading
{
    double bytesPerProperty;
    double blocksPerProperty;
    double peakPerBytes; ///< the most that was in use while reading, per byte that stays
};

Reading Read(const Reader& read)
{
    read(SheetDocument::Make(100)); // what a process keeps once and for all is not the sheet's
    const std::string document = SheetDocument::Make(kStyles);
    const Usage before = usage;
    usage.peak = usage.bytes;
    const std::shared_ptr<void> holder = read(document);
    const auto bytes = static_cast<double>(usage.bytes - before.bytes);
    constexpr auto kProperties = static_cast<double>(kStyles * SheetDocument::TextsPerStyle);
    return {bytes / kProperties, static_cast<double>(usage.blocks - before.blocks) / kProperties,
            static_cast<double>(usage.peak - before.bytes) / bytes};
}

void AddRows(const std::string& contender, const Reader& read)
{
    Rows::AddFigure("memory/bytes per property", contender, [read] { return Read(read).bytesPerProperty; });
    Rows::AddFigure("memory/blocks per property", contender, [read] { return Read(read).blocksPerProperty; });
    Rows::AddFigure("memory/peak of an import per byte that stays", contender,
                    [read] { return Read(read).peakPerBytes; });
}

void Require(bool holds)
{
    if (!holds)
    {
        std::fputs("The document was not read.\n", stderr);
        std::abort();
    }
}

/// A stream on somebody else's bytes: the document itself is not counted.
class Bytes : public VelUtils::Stream::Device
{
public:
    explicit Bytes(const std::string& bytes) : m_bytes(bytes) {}

    bool Read(void* target, std::size_t size, std::size_t& read) override
    {
        read = m_bytes.copy(static_cast<char*>(target), size, m_position);
        m_position += read;
        return true;
    }
    bool Write(const void*, std::size_t) override { return false; }
    bool Commit() override { return true; }

private:
    const std::string& m_bytes;
    std::size_t m_position = 0;
};

std::shared_ptr<void> ReadOurs(const std::string& document)
{
    SheetDocument::RegisterSchema();
    auto sheet = std::make_shared<Styles::StyleSheet>();
    VelUtils::Stream stream(std::make_unique<Bytes>(document));
    Require(sheet->Import(stream, /*replace*/ true));
    return sheet;
}

template <bool (*Import)(const std::string&, PeerStyles::Sheet&)>
std::shared_ptr<void> ReadPeer(const std::string& document)
{
    auto sheet = std::make_shared<PeerStyles::Sheet>();
    Require(Import(document, *sheet));
    return sheet;
}

#    ifdef STYLES_PEER_RAPIDJSON

bool ImportByEvents(const std::string& document, PeerStyles::Sheet& sheet)
{
    return PeerStyles::ImportByRapidEvents<rapidjson::UTF8<>>(document.c_str(), sheet);
}

std::shared_ptr<void> ReadRapidDocument(const std::string& document)
{
    auto holder = std::make_shared<rapidjson::Document>();
    Require(!holder->Parse(document.c_str()).HasParseError());
    return holder;
}

#    endif

#    ifdef STYLES_PEER_NLOHMANN

std::shared_ptr<void> ReadNlohmannDocument(const std::string& document)
{
    return std::make_shared<nlohmann::ordered_json>(nlohmann::ordered_json::parse(document));
}

#    endif

[[maybe_unused]] const bool added = [] {
    AddRows(Rows::Ours, &ReadOurs);
#    ifdef STYLES_PEER_RAPIDJSON
    AddRows("std::map<wstring,any>", &ReadPeer<&ImportByEvents>);
    AddRows("RapidJSON document", &ReadRapidDocument);
#    elif defined(STYLES_PEER_NLOHMANN)
    AddRows("std::map<wstring,any>", &ReadPeer<&PeerStyles::ImportByNlohmannEvents>);
#    endif
#    ifdef STYLES_PEER_NLOHMANN
    AddRows("nlohmann::ordered_json", &ReadNlohmannDocument);
#    endif
    return true;
}();

} // namespace

#endif // __GLIBC__
