#pragma once

#include <QDebug>
#include <QMessageLogger>

/**
 * A message logger for one log line, category "default".
 *
 * @p signature is written out, because every compiler spells unnamed namespaces and pointers
 * differently and log lines are searched for; it becomes the context's function. It has static
 * storage, as message handlers may keep the pointer. File, line and function are kept in release
 * builds.
 */
#define ORV_LOGGER(signature) QMessageLogger(__FILE__, __LINE__, signature)

/** A log line of a level such as warning, which begins with the signature as most do. */
#define ORV_LOG(level, signature) ORV_LOGGER(signature).level() << (signature)

/** The context of such a line, for one that is handed over as a ready text. */
#define ORV_LOG_CONTEXT(signature) QMessageLogContext(__FILE__, __LINE__, signature, "default")
