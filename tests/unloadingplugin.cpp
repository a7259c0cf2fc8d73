// A plugin that uses the library, for a host that does not.

#include <core/speech/language.h>

extern "C" Q_DECL_EXPORT QByteArray* newCode() { return new QByteArray(convertLanguageIdToIso(German)); }
