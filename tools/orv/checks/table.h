#pragma once

#include "shell/input.h"

#include <core/parsers/ecofile.h>

#include <functional>

/** A non-empty line of a table file, without the white space around it. */
struct TableLine
{
    Place place;
    QString text;   ///< a declaration or a comment if it starts with "#", else a row
    bool isDropped; ///< true for a row that the library drops
};

/** Reads a table as the library does, and passes each line to @p see. */
EcoFile readTable(
    const QByteArray& content, const std::function<void(const TableLine&, const EcoFile&)>& see);
