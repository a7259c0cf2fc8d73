#include <core/orvcore_version.h>

const char* orvCoreVersion()
{
    return ORVCORE_VERSION_STRING;
}
