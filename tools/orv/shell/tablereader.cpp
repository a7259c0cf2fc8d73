#include "shell/tablereader.h"

#include "shell/progress.h"

#include <QIODevice>
#include <QTextStream>

#include <algorithm>

EcoFile readTable(
    QIODevice& device, const std::function<void(const TableLine&, const EcoFile&)>& see)
{
    EcoFile file;
    Progress progress(device.size());
    qint64 seen = 0;
    QTextStream stream(&device);
    QString line;
    for (int number = 1; stream.readLineInto(&line); ++number) {
        if (device.pos() > seen) { // the stream reads block by block
            progress.advance(device.pos() - seen);
            seen = device.pos();
        }
        const auto isText = [](QChar character) { return !character.isSpace(); };
        const int column =
            int(std::find_if(line.cbegin(), line.cend(), isText) - line.cbegin()) + 1;
        line = line.trimmed();
        if (line.startsWith(u'#')) {
            file.parseHeaderLine(line);
            see({number, column, line, true, false}, file);
        } else if (!line.isEmpty()) {
            const int rowCount = file.rows().size();
            file.parseDataLine(line);
            see({number, column, line, false, file.rows().size() == rowCount}, file);
        }
    }
    return file;
}
