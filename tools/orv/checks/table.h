#pragma once

#include "shell/input.h"

#include <core/parsers/ecofile.h>

#include <functional>

/** A line of a table file that is not empty, without the white space around it. */
struct TableLine
{
    Place place;
    QString text;   ///< a declaration or a comment if it starts with "#", else a row
    bool isDropped; ///< a row that the library does not take
};

/** Reads as the library does, and reports each line to @p see. */
EcoFile readTable(
    QIODevice& device, const std::function<void(const TableLine&, const EcoFile&)>& see);
