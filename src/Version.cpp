#include "Version.h"

#include "coreqt_version_config.h"

namespace ko
{

const char *coreQtVersion()
{
    return COREQT_VERSION_STRING;
}

} // namespace ko
