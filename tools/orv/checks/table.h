#pragma once

#include "shell/input.h"

#include <core/parsers/ecofile.h>

#include <functional>

/** A line of a table file that is not empty, without the white space around it. */
struct TableLine
{
    Place place;
    QString text;   ///< a declaration or a comment if it starts with "#", else a row
    bool isDropped; ///< whether the library drops it, which is a row
};

/** Reads a table as the library does, and passes each line to @p see. */
EcoFile readTable(
    const QByteArray& content, const std::function<void(const TableLine&, const EcoFile&)>& see);
