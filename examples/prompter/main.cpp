// A small prompter. It reads prompts from a file or from standard input, one per line; espeak-ng renders
// them, and sox plays them or writes them to a WAV file. Rendered files are kept for later runs.

#include "ssml.h"

#include <core/orvcore.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QEventLoop>
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

// The samples that espeak-ng writes and sox converts sounds to.
const char* const format = "-r 22050 -c 1 -b 16 -e signed-integer";
constexpr int headerSize = 44; // of a WAV file

/** Renders sentences and sounds, and passes their samples to a player, which plays them meanwhile. */
class Prompter
{
public:
    /** @param wavFile the file to write; empty to play */
    Prompter(const QDir& renderedFolder, const QString& wavFile)
        : folder(renderedFolder)
    {
        maker.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        player.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        const QStringList input = words("-q -t raw") << words(format) << words("-");
        if (wavFile.isEmpty()) {
            player.start(QStringLiteral("play"), input);
        } else { // absolute, because sox runs a name that begins with "|" as a command
            const QString output = QFileInfo(wavFile).absoluteFilePath();
            player.start(QStringLiteral("sox"), input + words("-t wav") << output);
        }
    }

    /** Speaks a prompt; its error messages begin with @p place. */
    void speak(const PromptData& prompt, Language usual, const QString& place)
    {
        const Language language = prompt.language == InvalidLanguage ? usual : prompt.language;
        if (prompt.mode == PromptAudio) {
            const QString path = QFileInfo(prompt.text).absoluteFilePath();
            const char* const type = prompt.isMp3ToWavConversionNeeded() ? "mp3" : "wav";
            const QStringList arguments = words("--no-glob -t")
                                          << words(type) << path << words(format);
            speak(place, language, QStringLiteral("sox"), arguments,
                SpeechChecksumManager::generateChecksum(path));
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
                speak(place, language, QStringLiteral("espeak-ng"), arguments, ssml);
            }
        }
    }

    /** Waits until all is played or written. @return whether there was something, and all succeeded */
    bool finish()
    {
        player.closeWriteChannel();
        const int spoken = hasSucceeded(player) ? passed : 0;
        store.writePersistentData();
        std::printf("%d of %d spoken, %d rendered\n", spoken, wanted, rendered);
        return spoken > 0 && spoken == wanted;
    }

private:
    /**
     * Renders a file with @p program, unless an earlier run has done so, and passes it on.
     *
     * @param input the text for espeak-ng; for sox, which does not read it, the sound's checksum
     */
    void speak(const QString& place, Language language, const QString& program,
        const QStringList& arguments, const QByteArray& input)
    {
        ++wanted;
        if (player.state() == QProcess::NotRunning) {
            return; // after a signal or a failure
        }
        // The name depends on everything that determines the samples.
        const QByteArray source = (program + arguments.join(QChar(0))).toUtf8() + input;
        const QByteArray digest = QCryptographicHash::hash(source, QCryptographicHash::Md5).toHex();
        QFile file(folder.filePath(QString::fromLatin1(digest + ".wav")));
        const QString name = file.fileName();
        constexpr auto type = SpeechChecksumManager::DefaultChecksum;
        const QByteArray stored = store.checksum(name, language, type);
        if (stored != SpeechChecksumManager::generateChecksum(name)) {
            maker.start(program, QStringList(arguments) << name);
            maker.write(input);
            maker.closeWriteChannel();
            if (!hasSucceeded(maker)) {
                if (player.state() != QProcess::NotRunning) { // no signal has ended both
                    complain(place, program + QStringLiteral(" failed"));
                    --wanted;
                }
                return;
            }
            store.insert(name, language, type);
            ++rendered;
        }
        if (file.open(QIODevice::ReadOnly)) {
            player.write(file.readAll().mid(headerSize));
            ++passed;
        }
    }

    /** Handles events until a process ends; a signal ends both. @return whether it succeeded */
    bool hasSucceeded(QProcess& process)
    {
        QEventLoop loop;
        QObject::connect(&process, &QProcess::stateChanged, &loop, [&loop] { loop.exit(1); });
        while (process.state() != QProcess::NotRunning) {
            if (loop.exec() != 1) { // a signal
                for (QProcess* const running : {&maker, &player}) {
                    running->kill();
                    running->waitForFinished();
                }
            }
        }
        return process.error() != QProcess::FailedToStart
               && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    }

    const QDir folder;
    SpeechChecksumManager store;
    QProcess maker;
    QProcess player;
    int wanted = 0;
    int passed = 0;   // to the player
    int rendered = 0; // by this run
};

/** Speaks the prompts of a file, one per line. */
void speakLines(
    const QByteArray& content, PromptContext context, Language usual, Prompter& prompter)
{
    int number = 0;
    for (const QByteArray& line : content.split('\n')) {
        const QString place = QStringLiteral("line %1").arg(++number);
        PromptData prompt = PromptData::parse(QString::fromUtf8(line).trimmed(), context);
        QFile markup(prompt.text);
        if (prompt.mode == PromptFile && markup.open(QIODevice::ReadOnly)) {
            prompt = PromptData::parse(QString::fromUtf8(markup.readAll()), context);
        }
        if (prompt.mode == PromptFile) {
            complain(place, QStringLiteral("no markup in ") + prompt.text);
        } else {
            prompter.speak(prompt, usual, place);
        }
    }
}

/** Reads the options; an unknown one ends the program with one line. */
void readOptions(QCommandLineParser& options)
{
    const auto text = [](const char* latin1) { return QString::fromLatin1(latin1); };
    options.setApplicationDescription(text("Speaks prompts, one per line, through espeak-ng."));
    options.addHelpOption();
    options.addOptions({
        {text("language"), text("The language of prompts that set none, such as de_DE."),
            text("ISO"), text("en_GB")},
        {text("context"), text("10 for brand sounds, 19 for off-board."), text("N"), text("0")},
        {text("brand"), text("The car brand, for brand sounds."), text("NAME"), text("TYX")},
        {text("wav"), text("Writes this file instead of playing."), text("FILE")},
    });
    options.addPositionalArgument(text("file"), text("The prompts, one per line."), text("[FILE]"));
    options.process(QCoreApplication::arguments());
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("prompter"));
    QLoggingCategory::setFilterRules(
        QStringLiteral("default.debug=false")); // one line for each text
    QCommandLineParser options;
    readOptions(options);
    const auto value = [&options](const char* name) { return options.value(QLatin1String(name)); };

    const Language language = convertIsoToLanguageId(value("language").toUtf8());
    bool isNumber = false;
    const auto context = PromptContext(value("context").toInt(&isNumber));
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::CacheLocation));
    const QString store = folder.filePath(QStringLiteral("checksums.json"));
    QLockFile lock(store + QStringLiteral(".lock")); // orv takes it too
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

    qputenv("ORV_SPEECH_CHECKSUM_FILE", store.toUtf8()); // the checksums of the rendered files
    loadBrandSounds(value("brand"));
    const QByteArray content = prompts.readAll();
    PosixSignals& bridge = PosixSignals::instance;
    bridge.setup(SIGTERM, &bridge, "applicationQuit");
    bridge.setup(SIGINT, &bridge, "applicationQuit");
    QTimer::singleShot(0, [&] { // the event loop runs, so signals are handled
        Prompter prompter(folder, value("wav"));
        speakLines(content, context, language, prompter);
        QCoreApplication::exit(prompter.finish() && !hasComplained ? 0 : 1);
    });
    return QCoreApplication::exec();
}
