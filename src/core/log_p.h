#pragma once

#include <QDebug>
#include <QMessageLogger>

/**
 * A message logger for one log line in the category "default", with file, line and function in
 * release builds too.
 *
 * @p signature becomes the context's function. It is written out because services search for log
 * lines and compilers spell unnamed namespaces and pointers differently. It must have static
 * storage: message handlers may keep the pointer.
 */
#define ORV_LOGGER(signature) QMessageLogger(__FILE__, __LINE__, signature)

/** A log line of @p level, such as warning, that begins with @p signature, as most lines do. */
#define ORV_LOG(level, signature) ORV_LOGGER(signature).level() << (signature)

/** The context of a log line, for lines whose text is passed ready-made. */
#define ORV_LOG_CONTEXT(signature) QMessageLogContext(__FILE__, __LINE__, signature, "default")
