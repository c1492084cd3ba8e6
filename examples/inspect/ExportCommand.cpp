// export: the sheet as a document.

#include "Commands.h"

namespace Inspect
{

void RunExport(Session& session)
{
    SaveSheet(session, session.request.arguments[0]);
}

} // namespace Inspect
