#pragma once

#include <QDebug>
#include <QMessageLogger>

/**
 * A message logger for one log line, category "default".
 *
 * @p signature is written out, because every compiler spells unnamed namespaces and pointers
 * differently and log lines are searched for; it becomes the context's function, and most lines
 * also stream it as their first item. It has static storage, as message handlers may keep the
 * pointer. File, line and function are kept in release builds.
 */
#define ORV_LOG(signature) QMessageLogger(__FILE__, __LINE__, signature)
