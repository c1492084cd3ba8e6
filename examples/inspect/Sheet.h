/// \file
/// The sheet of the program: a style sheet that is read from a file with a report on what the file holds, and that is
/// written so that little of the file changes.
#pragma once

#include "Findings.h"
#include "Schema.h"

#include <styles/StyleSheet.h>

#include <string>
#include <vector>

namespace Inspect
{

class Progress;

/// A sheet on a file.
///
/// The library reads documents of any origin and passes over what it does not understand. Whoever is to save the file
/// again wants to know that first: `GetLosses` tells.
class Sheet : public Styles::StyleSheet
{
public:
    /// Reads the file. The schema must be registered. \throws Failure when the file is no sheet, with all mistakes.
    /// \param progress tells of the work; null for silence
    Sheet(const Schema& schema, const VelString& path, Progress* progress = nullptr);

    /// Takes a document that was read, and checked for an empty sheet. \throws Failure when a finding refuses it.
    Sheet(const Schema& schema, const Document& document, const std::vector<Finding>& findings,
          Progress* progress = nullptr);

    /// What was passed over in the file, a message with its place each; saving to the same file loses it.
    [[nodiscard]] const std::vector<std::string>& GetLosses() const noexcept { return m_losses; }

    /// What else is strange in the file: parents that are not there, numbers of too many digits.
    [[nodiscard]] const std::vector<std::string>& GetWarnings() const noexcept { return m_warnings; }

    /// What the document leaves out because it is newer than the version of the sheet, a message for each property.
    [[nodiscard]] std::vector<std::string> GetValuesLeftOut() const;
    /// The same for one of its styles.
    [[nodiscard]] std::vector<std::string> GetValuesLeftOut(const Styles::Style& style) const;

    /// The document.
    [[nodiscard]] std::string ToBytes() const;

    /// Writes the document to a file, which is replaced as a whole. \throws Failure; the file is as it was then.
    void Save(const VelString& path) const;

    [[nodiscard]] const VelString& GetPath() const noexcept { return m_path; }

protected:
    /// Puts the categories in the order in which the file had them, and those that it had not behind, in the order of
    /// the schema: by itself the library writes them in an order that changes from run to run.
    void ExportJson(Json::Variant& out, bool includeTemporaries) const override;

private:
    Sheet(const Schema& schema, const Document& document, Progress* progress);
    void Read(const Schema& schema, const Document& document, const std::vector<Finding>& findings, Progress* progress);

    VelString m_path;
    std::vector<VelString> m_categoryOrder;
    std::vector<std::string> m_losses;
    std::vector<std::string> m_warnings;
};

} // namespace Inspect
