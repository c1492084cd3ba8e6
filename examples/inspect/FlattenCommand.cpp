// flatten: a style that inherits nothing any more and looks as before.

#include "Commands.h"
#include "Output.h"
#include "Takeover.h"

#include <string>

namespace Inspect
{

void RunFlatten(Session& session)
{
    Sheet& sheet = session.sheet;
    Style* style = &FindStyle(sheet, session.request.arguments[0]);
    const bool saves = session.request.inPlace || !session.request.outputPath.empty();
    std::vector<Style*> affected{style};
    if (saves)
    {
        const std::vector<Style*> span{style};
        affected.clear();
        sheet.GetDependencies(span, affected); // the style itself among them
    }
    const Takeover takeover(sheet, affected, [&](const Style& inner, const Style& top) {
        return &top == style && inner.GetParent() != nullptr;
    });
    style->Flatten();
    const Takeover::Outcome outcome = takeover.Settle();
    AcceptChanges(session, outcome.changes);
    if (saves)
    {
        SaveChanges(session, outcome.report);
        return;
    }
    WarnOfValuesLeftOut(session, sheet.GetValuesLeftOut(*style));
    const VelString text = style->Serialize(sheet, /*compact*/ false, /*includeTemporaries*/ false);
    const VelPlatform::VelStringA bytes = VelPlatform::ToNarrow(text);
    session.out.write(bytes.c_str(), static_cast<std::streamsize>(bytes.size())) << '\n';
}

} // namespace Inspect
