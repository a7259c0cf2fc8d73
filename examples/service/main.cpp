// A small speech service. It reads prompts from standard input, one per line, and prints their
// sentences, which a real service would pass to its engine. SIGTERM or SIGINT quits the event loop; then
// the singletons are deleted, newest first. A second signal ends the process at once.

#include <core/orvcore.h>

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>
#include <cstdio>

#include <unistd.h>

namespace {

/** Prints sentences and sounds. */
class Audio : public AbstractSingleton
{
public:
    Audio()
    {
        std::puts("audio is there");
    }
    ~Audio() override
    {
        std::puts("audio is gone");
    }

    void say(const QString& text)
    {
        std::printf("say: %s\n", qUtf8Printable(text));
    }

    void play(const QString& path)
    {
        std::printf("play: %s\n", qUtf8Printable(path));
    }
};

/** Reads prompts. It uses Audio, so it is registered later and deleted first. */
class Dialog : public AbstractSingleton
{
public:
    explicit Dialog(Audio& audio)
        : audio(audio)
        , input(STDIN_FILENO, QSocketNotifier::Read)
    {
        std::puts("dialog is there");
        QObject::connect(&input, &QSocketNotifier::activated, [this] { readPrompts(); });
    }
    ~Dialog() override
    {
        std::puts("dialog is gone");
    }

private:
    /** Reads without a buffer, because the notifier does not see prompts in one. */
    void readPrompts()
    {
        char block[4096];
        const ssize_t length = read(STDIN_FILENO, block, sizeof block);
        if (length > 0) {
            pending.append(block, int(length));
        } else {
            input.setEnabled(false);
            pending.append(pending.isEmpty() ? "" : "\n"); // the last line may lack its end
        }
        for (auto end = pending.indexOf('\n'); end >= 0; end = pending.indexOf('\n')) {
            const QString line = QString::fromUtf8(pending.left(end));
            pending.remove(0, end + 1);
            speak(PromptData::parse(line, GeneralContext));
        }
    }

    void speak(const PromptData& prompt)
    {
        if (prompt.mode == PromptAudio || prompt.mode == PromptFile) {
            audio.play(prompt.text);
            return;
        }
        const QString code =
            ApplicationSettings::value(QStringLiteral("speech/language"), QStringLiteral("en_GB"))
                .toString();
        const Language usual = convertIsoToLanguageId(code.toLatin1());
        const Language language = prompt.language == InvalidLanguage ? usual : prompt.language;
        for (const QString& sentence : SentenceTokenizer::split(prompt.text, language)) {
            audio.say(sentence);
        }
    }

    Audio& audio;
    QSocketNotifier input;
    QByteArray pending; // a line whose end is not read yet
};

} // namespace

int main(int argc, char** argv)
{
    std::setvbuf(stdout, nullptr, _IOLBF, 0); // each line is printed at once, also to a pipe
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("service-example")); // for settings
    PosixSignals& bridge = PosixSignals::instance;
    bridge.setup(SIGTERM, &bridge, "applicationQuit");
    bridge.setup(SIGINT, &bridge, "applicationQuit");

    const QString brand =
        ApplicationSettings::value(QStringLiteral("speech/brand"), QStringLiteral("TYX"))
            .toString();
    loadBrandSounds(brand);
    auto* const audio = new Audio;
    SingletonTracker::insert("audio", audio);
    SingletonTracker::insert("dialog", new Dialog(*audio));

    const int exitCode = QCoreApplication::exec();
    std::puts("the event loop has ended");
    SingletonTracker::clear(); // while the application exists: notifiers need it
    return exitCode;
}
