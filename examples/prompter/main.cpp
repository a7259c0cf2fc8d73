// A prompter in small: prompts come in from a file or from standard input, one a line, and espeak-ng
// speaks them, through the sound card or into a WAV file. What is rendered is kept for the next run.

#include "ssml.h"

#include <core/orvcore.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QLockFile>
#include <QLoggingCategory>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>

#include <csignal>
#include <cstdio>

namespace {

bool hasComplained = false;

void complain(const QString& place, const QString& text)
{
    hasComplained = true;
    std::fprintf(stderr, "prompter: %s: %s\n", qUtf8Printable(place), qUtf8Printable(text));
}

QStringList words(const char* text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

// As espeak-ng writes it; sox brings sounds to the same.
const char* const format = "-r 22050 -c 1 -b 16 -e signed-integer";
constexpr int headerSize = 44; // of a WAV file

/** Renders sentences and sounds, one after the other, and meanwhile plays those that are ready. */
class Prompter
{
public:
    /** @param wavFile what is to be written; empty to play */
    Prompter(const QDir& renderedFolder, const QString& wavFile)
        : folder(renderedFolder)
        // Absolute, as sox takes a name that begins with "|" for a command.
        , output(wavFile.isEmpty() ? wavFile : QFileInfo(wavFile).absoluteFilePath())
    {
        for (QProcess* const process : {&maker, &player}) {
            process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
            QObject::connect(process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished),
                [this, process] { ended(*process); });
        }
    }

    ~Prompter()
    {
        for (QProcess* const process : {&maker, &player}) {
            process->disconnect(); // what still runs when a signal came
            process->kill();
            process->waitForFinished();
        }
        store.writePersistentData();
    }

    /** Puts what a prompt asks for behind the rest; @p place begins each complaint of it. */
    void add(const PromptData& prompt, Language usual, const QString& place)
    {
        const Language language = prompt.language == InvalidLanguage ? usual : prompt.language;
        if (prompt.mode == PromptAudio) {
            const QString path = QFileInfo(prompt.text).absoluteFilePath();
            const char* const type = prompt.isMp3ToWavConversionNeeded() ? "mp3" : "wav";
            const QStringList arguments = words("--no-glob -t")
                                          << words(type) << path << words(format);
            add({place, language, QStringLiteral("sox"), arguments,
                SpeechChecksumManager::generateChecksum(path), {}});
            return;
        }
        const QString voice = voiceOf(QString::fromLatin1(convertLanguageIdToIso(language)));
        const QStringList arguments = words("-m -b1 --stdin -v") << voice << words("-w");
        for (const QString& sentence : SentenceTokenizer::split(prompt.text, language)) {
            QStringList ignored;
            const QByteArray ssml = toSsml(sentence, ignored).toUtf8();
            if (!ignored.isEmpty()) {
                complain(place, QStringLiteral("ignored: ") + ignored.join(QLatin1Char(' ')));
            }
            if (!ssml.isEmpty()) {
                add({place, language, QStringLiteral("espeak-ng"), arguments, ssml, {}});
            }
        }
    }

    /** Renders and plays what is next, if nothing is under way. In the end it quits the event loop. */
    void goOn()
    {
        const bool isMakerIdle = maker.state() == QProcess::NotRunning;
        while (isMakerIdle && made < pieces.size() && isGood(pieces[made])) {
            ++made;
        }
        if (isMakerIdle && made < pieces.size()) {
            maker.start(pieces[made].program, pieces[made].arguments);
            maker.write(pieces[made].input);
            maker.closeWriteChannel();
        }
        const bool isPlayerIdle = player.state() == QProcess::NotRunning;
        if (isPlayerIdle && output.isEmpty() && played < made) {
            player.start(QStringLiteral("play"), words("-q --no-glob") << pieces[played].file);
        } else if (isPlayerIdle && played < made && made == pieces.size()) {
            join();
        } else if (played == pieces.size()) {
            QCoreApplication::quit();
        }
    }

    /** @return whether there was something to speak, and all of it is spoken */
    bool report() const
    {
        std::printf("%d of %d spoken, %d rendered\n", played, int(pieces.size()), rendered);
        return played > 0 && played == pieces.size();
    }

private:
    struct Piece
    {
        QString place;
        Language language;
        QString program; // that makes the file
        QStringList arguments;
        QByteArray input; // a text for espeak-ng; sox reads none, so the checksum of the sound
        QString file;
    };

    /** Names the file after all that it is made from, so that another text is another file. */
    void add(Piece piece)
    {
        const QByteArray all =
            (piece.program + piece.arguments.join(QChar(0))).toUtf8() + piece.input;
        const QByteArray digest = QCryptographicHash::hash(all, QCryptographicHash::Md5).toHex();
        piece.file = folder.filePath(QString::fromLatin1(digest + ".wav"));
        piece.arguments += piece.file;
        pieces += piece;
    }

    /** Whether the file was rendered, now or by an earlier run, and has not changed since. */
    bool isGood(const Piece& piece) const
    {
        return store.checksum(piece.file, piece.language, SpeechChecksumManager::DefaultChecksum)
               == SpeechChecksumManager::generateChecksum(piece.file);
    }

    void ended(const QProcess& process)
    {
        const bool isMaker = &process == &maker;
        const Piece piece = pieces[isMaker ? made : played];
        const bool hasSucceeded = process.exitStatus() == QProcess::NormalExit
                                  && process.exitCode() == 0 && QFile::exists(piece.file);
        if (!hasSucceeded) {
            complain(isMaker || output.isEmpty() ? piece.place : output,
                process.program() + QStringLiteral(" failed"));
        }
        if (isMaker && hasSucceeded) {
            store.insert(piece.file, piece.language, SpeechChecksumManager::DefaultChecksum);
            ++rendered;
        } else if (isMaker) {
            pieces.removeAt(made);
        } else if (hasSucceeded) {
            played = output.isEmpty() ? played + 1 : made;
        } else { // the rest would not be heard either
            return QCoreApplication::quit();
        }
        goOn();
    }

    /** Hands the samples of all files to sox, which writes them as one. */
    void join()
    {
        player.start(
            QStringLiteral("sox"), words("-t raw") << words(format) << words("- -t wav") << output);
        for (const Piece& piece : pieces) {
            QFile file(piece.file);
            file.open(QIODevice::ReadOnly); // it was good when it was looked at
            player.write(file.readAll().mid(headerSize));
        }
        player.closeWriteChannel();
    }

    const QDir folder;
    const QString output;
    SpeechChecksumManager store;
    QList<Piece> pieces;
    int made = 0; // so many may be played
    int played = 0;
    int rendered = 0; // by this run
    QProcess maker;
    QProcess player;
};

/** Hands the prompts of a file on, one a line. */
void readPrompts(QFile& file, PromptContext context, Language usual, Prompter& prompter)
{
    QByteArray line;
    for (int number = 1; !(line = file.readLine()).isEmpty(); ++number) {
        const QString place = QStringLiteral("line %1").arg(number);
        PromptData prompt = PromptData::parse(QString::fromUtf8(line).trimmed(), context);
        QFile markup(prompt.text);
        if (prompt.mode == PromptFile && markup.open(QIODevice::ReadOnly)) {
            prompt = PromptData::parse(QString::fromUtf8(markup.readAll()), context);
        }
        if (prompt.mode == PromptFile) {
            complain(place, QStringLiteral("no markup in ") + prompt.text);
        } else {
            prompter.add(prompt, usual, place);
        }
    }
}

/** Defines and reads the options; what is none of them ends the program with one line. */
void readOptions(QCommandLineParser& options)
{
    const auto text = [](const char* latin1) { return QString::fromLatin1(latin1); };
    options.setApplicationDescription(text("Speaks prompts, one a line, through espeak-ng."));
    options.addHelpOption();
    options.addOptions({
        {text("language"), text("The usual one, such as de_DE."), text("ISO"), text("en_GB")},
        {text("context"), text("10 for brand sounds, 19 for off-board."), text("N"), text("0")},
        {text("brand"), text("Whose sounds are played."), text("NAME"), text("TYX")},
        {text("wav"), text("Writes this file instead of playing."), text("FILE")},
    });
    options.addPositionalArgument(text("file"), text("The prompts, one a line."), text("[FILE]"));
    options.process(QCoreApplication::arguments());
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("prompter"));
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false")); // a line for each text
    QCommandLineParser options;
    readOptions(options);
    const auto value = [&options](const char* name) { return options.value(QLatin1String(name)); };

    const Language language = convertIsoToLanguageId(value("language").toUtf8());
    bool isNumber = false;
    const auto context = PromptContext(value("context").toInt(&isNumber));
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::CacheLocation));
    const QString store = folder.filePath(QStringLiteral("checksums.json"));
    QLockFile lock(store + QStringLiteral(".lock")); // which orv takes too
    const QStringList files = options.positionalArguments() << QStringLiteral("/dev/stdin");
    QFile prompts(files.first());
    if (!isNumber || files.size() > 2) {
        complain(value("context"), QStringLiteral("not the number of a context, or two files"));
    } else if (language == InvalidLanguage || !hasVoice(value("language"))) {
        complain(value("language"), QStringLiteral("unknown here, or espeak-ng is not installed"));
    } else if (QStandardPaths::findExecutable(QStringLiteral("sox")).isEmpty()) {
        complain(QStringLiteral("sox"), QStringLiteral("not installed"));
    } else if (!prompts.open(QIODevice::ReadOnly)) {
        complain(files.first(), prompts.errorString());
    } else if (!folder.mkpath(QStringLiteral(".")) || !lock.tryLock()) {
        complain(folder.path(), QStringLiteral("in use by another process, or not writable"));
    }
    if (hasComplained) {
        return 2;
    }

    qputenv("ORV_SPEECH_CHECKSUM_FILE", store.toUtf8()); // the store of what is rendered
    loadBrandSounds(value("brand"));
    Prompter prompter(folder, value("wav"));
    readPrompts(prompts, context, language, prompter);
    PosixSignals& bridge = PosixSignals::instance;
    bridge.setup(SIGTERM, &bridge, "applicationQuit");
    bridge.setup(SIGINT, &bridge, "applicationQuit");
    QTimer::singleShot(0, [&prompter] { prompter.goOn(); });
    QCoreApplication::exec();
    return prompter.report() && !hasComplained ? 0 : 1;
}
