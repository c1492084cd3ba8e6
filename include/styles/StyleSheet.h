/// \file
/// `StyleSheet`: the named collection that owns styles, and its document.
///
/// Every style of a sheet has one name; names are unique without regard to case, and the sheet lists its styles in the
/// order of their names. A sheet also is the context in which styles are written and read: a parent is written by its
/// name in the sheet.
///
/// Ownership: a sheet owns its styles, from the moment they are handed to `AddStyle` until `RemoveStyle` gives them
/// back. Substyles are no entries of a sheet; they belong to the styles that hold them.
///
/// The document is a JSON object: "version" and "id" of the sheet, then an object for each category with its styles by
/// name. Documents are untrusted: whatever they hold, reading them gives false or a sheet.
///
/// Exceptions: unless a function says otherwise, it leaves the sheet as it was when memory runs out.
///
/// Threads: a sheet and its styles are used by one thread at a time. Any number of threads may read.
#pragma once

#include "Style.h"

#include <VelUtils/CaseInsensitiveOrder.h>
#include <VelUtils/Stream.h>

#include <map>
#include <vector>

namespace Styles
{

/// What a host implements to hear of the styles that `StyleSheet::CopyContentsFrom` makes.
class IStyleSheetDuplicationContext
{
public:
    /// `style` has been made; the second argument is false.
    virtual void OnStyleDuplicated(Style* style, bool reserved) = 0;

protected:
    /// For derived classes only: nobody makes, copies or destroys a context through this interface.
    IStyleSheetDuplicationContext() = default;
    /// For derived classes only.
    IStyleSheetDuplicationContext(const IStyleSheetDuplicationContext&) = default;
    /// For derived classes only.
    IStyleSheetDuplicationContext& operator=(const IStyleSheetDuplicationContext&) = default;
    ~IStyleSheetDuplicationContext() = default;
};

/// Styles under unique names, with a version, and perhaps an identity in an outside system.
class STYLES_API StyleSheet
{
public:
    /// Styles by name, in the order of the names.
    using NameMap = std::map<VelString, Style*, VelUtils::String::LessThanCaseInsensitive>;

    /// Empty, at the manager's current version, without external identity.
    StyleSheet();

    /// Shares the collection of `other`: of the two sheets, only one may be destroyed. `CopyContentsFrom` copies.
    StyleSheet(const StyleSheet& other);
    StyleSheet& operator=(const StyleSheet&) = delete;

    /// Destroys the styles.
    virtual ~StyleSheet();

    /// \name The collection
    /// @{

    /// Adds `style`, which belongs to the sheet from now on, also when this function refuses it or throws. When a style
    /// of that name is there: with `replace`, it is taken out and returned, and the caller owns it (unless it is
    /// `style` itself); else `style` is destroyed, and nothing changes. A null `style` is stored. \return the style
    /// that was replaced, or null. \throws std::bad_alloc; the offered style has been destroyed and the sheet is as it
    /// was.
    Style* AddStyle(const VelString& name, Style* style, bool replace);

    /// Takes the style of that name out and hands it to the caller; null when there is none.
    Style* RemoveStyle(const VelString& name);

    /// Takes `style` out, which belongs to the caller from then on; false when it is not in the sheet.
    bool RemoveStyle(Style* style);

    /// Destroys those of `styles` that are in the sheet, after making all styles of the sheet independent of `styles`.
    /// \return whether a style was destroyed. When a definition throws or memory runs out, no style has been destroyed,
    /// and every style of the sheet has the effective values that it had (but where styles nest in themselves without
    /// end: those may end already). What definitions throw about destroyed styles is dropped.
    bool DeleteStyles(StyleSpan styles);

    /// Destroys all styles and takes the manager's current version; the external identity stays.
    void Clear();

    /// Replaces the contents by copies of those of `other` and tells `context` (may be null) of each. Copying a sheet
    /// to itself does nothing. When `other` cannot be written, the sheet is as it was. What cannot be read, also for
    /// want of memory, is left out, as by `Import`. When `context` throws, all copies are there.
    void CopyContentsFrom(const StyleSheet& other, IStyleSheetDuplicationContext* context);

    /// Adds the styles of this sheet to it once more, which destroys them (they stay listed, empty), and empties the
    /// names of `other`, whose styles belong to nobody from then on. To bring the styles of one sheet into another,
    /// export and import them.
    void MergeIn(StyleSheet& other, bool replace);
    /// @}

    /// \name Looking up
    /// @{

    /// The style of that name, or null.
    [[nodiscard]] Style* GetStyle(const VelString& name) const;
    /// All styles, in the order of their names.
    [[nodiscard]] std::vector<Style*> GetStyles() const;
    /// The styles of these names, in the order given; names without a style are passed over.
    [[nodiscard]] std::vector<Style*> GetStylesByName(const std::vector<VelString>& names) const;
    /// The styles of that category; `PropertyKey::Empty` for those without.
    [[nodiscard]] std::vector<Style*> GetStylesByCategory(const PropertyKey& category) const;
    /// The name of `style`; empty for null and for a style of no or another sheet.
    [[nodiscard]] VelString GetStyleName(const Style* style) const;
    /// The names of the styles of that category; `PropertyKey::Empty` for those without.
    [[nodiscard]] std::vector<VelString> GetStyleNames(const PropertyKey& category) const;
    /// All names, in their order.
    [[nodiscard]] std::vector<VelString> GetStyleNames() const;
    /// The styles whose parent is exactly `parent`; none for null.
    [[nodiscard]] NameMap GetChildStyles(const Style* parent) const;
    /// Appends every style of the sheet that depends on one of `styles` to `dependants`.
    void GetDependencies(StyleSpan styles, std::vector<Style*>& dependants) const;
    /// The first style with exactly this external identity and name; null when there is none or an argument is empty.
    [[nodiscard]] Style* GetExternalStyleAlias(const VelString& externalID, const VelString& externalName) const;
    /// @}

    /// \name Names
    /// @{

    /// Gives the style another name. Nothing happens when there is no `oldName`, or `newName` belongs to another style.
    void RenameStyle(const VelString& oldName, const VelString& newName);

    /// A name that no style of the sheet has: `baseName` or, where it is taken, with a number behind it. The name of a
    /// category stands for its UI name followed by " 1".
    [[nodiscard]] VelString GetUnusedStyleName(const VelString& baseName) const;
    /// @}

    /// \name Version and identity
    /// @{

    /// The version that the sheet is written for: properties that are newer are left out.
    [[nodiscard]] int GetVersion() const noexcept { return m_version; }
    /// Sets the version; an import sets that of the document.
    void SetVersion(int version) noexcept { m_version = version; }
    /// The identity of the sheet in an outside system; empty for none.
    virtual VelString GetExternalID();
    /// @}

    /// \name The document
    /// @{

    /// Writes the document as UTF-8. False when the stream refuses it.
    bool Export(VelUtils::Stream& stream) const;

    /// Reads a document and adds its styles: with `replace` in the place of styles of the same name, whose heirs
    /// inherit from the new ones; otherwise styles that are there stay. Categories that are not registered are passed
    /// over. False when the text is no document (the sheet is as it was), or when reading stopped in the middle, for
    /// a style that is no object, for a definition that threw or for want of memory. Then the sheet may have the
    /// version and the identity of the document, each style that the document names is the one from before, or a new
    /// one with what was read of it, be it nothing, and nothing inherits from a style that has been replaced. The other
    /// styles are as they were.
    bool Import(VelUtils::Stream& stream, bool replace);
    /// @}

protected:
    /// \name The stages of a document, for classes derived from this one
    /// A sheet of this very class is written and read without them, to the same outcome: nobody could tell.
    /// @{

    /// The text of the document.
    virtual void ExportToString(VelString& out, bool includeTemporaries) const;
    /// Reads a text; any exception on the way is the answer false.
    virtual bool ImportFromString(const VelString& text, bool replace);
    /// Adds the members of the document to `out`, an object. \throws std::bad_cast when it is none.
    virtual void ExportJson(Json::Variant& out, bool includeTemporaries) const;
    /// Reads a document. \throws std::bad_cast for a style that is no object, and what definitions throw; then the
    /// sheet is as `Import` leaves it.
    virtual bool ImportJson(Json::Object* root, bool replace);
    /// @}

    /// Sets the identity of the sheet; those of its styles stay.
    virtual void SetExternalID(const VelString& id);

    /// Styles by category and name.
    using CategoryStyleMap = std::map<PropertyKey, NameMap>;
    /// Replaces `out` by the styles of the sheet, which owns them. When memory runs out, `out` is as it was.
    void GenerateCategoryStyleMap(CategoryStyleMap& out) const;

private:
    class DocumentReader;
    class DocumentWriter;

    [[nodiscard]] std::vector<Style*> ListParentsFirst(StyleSpan doomed) const;
    void DestroyStyle(Style* style) noexcept;
    [[nodiscard]] bool IsListed(const Style* style) const noexcept;

    NameMap* m_stylesByName = nullptr;
    std::map<Style*, VelString>* m_namesByStyle = nullptr;
    int m_version;
    VelString m_externalID;
};

/// `name` without the characters that names of styles do not have, and without white space at its ends; may be empty.
/// `strict`: only letters and digits of ASCII and a set of its signs. Otherwise anything but tab, line feed, double
/// quote and tilde.
[[nodiscard]] STYLES_API VelString ConvertToValidStyleName(const VelString& name, bool strict);

} // namespace Styles
