#include "shell/tablereader.h"

#include <QTextStream>

EcoFile readTable(
    QIODevice& device, const std::function<void(const TableLine&, const EcoFile&)>& see)
{
    EcoFile file;
    QTextStream stream(&device);
    QString line;
    for (int number = 1; stream.readLineInto(&line); ++number) {
        line = line.trimmed();
        if (line.startsWith(QLatin1Char('#'))) {
            file.parseHeaderLine(line);
            see({number, line, true, false}, file);
        } else if (!line.isEmpty()) {
            const int rowCount = file.rows().size();
            file.parseDataLine(line);
            see({number, line, false, file.rows().size() == rowCount}, file);
        }
    }
    return file;
}
