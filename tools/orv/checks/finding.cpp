#include "checks/finding.h"

#include <tuple>

bool Finding::operator<(const Finding& other) const
{
    return std::tie(place.line, place.column, rule, text)
           < std::tie(other.place.line, other.place.column, other.rule, other.text);
}

QString CheckOptions::onThisMachine(const QString& path) const
{
    return path.startsWith(u'/') ? root + path : path;
}

bool CheckOptions::isFile(const QString& path) const
{
    return QFileInfo(onThisMachine(path)).isFile();
}
