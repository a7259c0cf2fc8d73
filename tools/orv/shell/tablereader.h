#pragma once

#include <core/parsers/ecofile.h>

#include <functional>

class QIODevice;

/** A line of a table file that is not empty, without the white space around it. */
struct TableLine
{
    int number; ///< from 1
    int column; ///< of the first character, from 1
    QString text;
    bool isDeclaration;
    bool isDropped; ///< a row that the library does not take
};

/** Reads as the library does, and reports each line to @p see. */
EcoFile readTable(
    QIODevice& device, const std::function<void(const TableLine&, const EcoFile&)>& see);
