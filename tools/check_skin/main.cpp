#include "tools/check_skin/SkinCheck.h"
#include "tools/check_skin/StateSheet.h"

#include <QCommandLineParser>
#include <QGuiApplication>

#include <cstdio>

namespace {

using namespace velmorant;

enum ExitCode { Good = 0, Faulty = 1, Unusable = 2 };

void say(std::FILE* stream, const QString& line) {
    std::fprintf(stream, "%s\n", qUtf8Printable(line));
}

ExitCode save(const QImage& image, const QString& path) {
    if (image.save(path))
        return Good;
    say(stderr, QStringLiteral("%1: cannot be written").arg(path));
    return Unusable;
}

ExitCode checkFile(const QString& path, SkinKind kind) {
    const DissectedSkin drawing(path);
    if (!drawing.problem().isEmpty()) {
        say(stderr, QStringLiteral("%1: %2").arg(path, drawing.problem()));
        return Faulty;
    }
    const QStringList findings = checkSkin(drawing, kind);
    for (const QString& finding : findings)
        say(stderr, QStringLiteral("%1: %2").arg(path, finding));
    if (findings.isEmpty())
        say(stdout, QStringLiteral("%1: good").arg(path));
    return findings.isEmpty() ? Good : Faulty;
}

struct Pictures {
    QString window; ///< where to write it; empty: not wanted
    QString states;
};

ExitCode draw(const QString& path, SkinKind kind, const Pictures& pictures) {
    const DissectedSkin drawing(path);
    if (!drawing.problem().isEmpty())
        return Faulty;
    ExitCode result = Good;
    if (!pictures.window.isEmpty())
        result = std::max(result, save(drawing.window(1), pictures.window));
    if (!pictures.states.isEmpty())
        result = std::max(result, save(stateSheet(drawing, kind), pictures.states));
    return result;
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen"); // the command shows no window
    const QGuiApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription("Checks a skin for missing elements, cut-off texts and low "
                                     "contrast. Exit code 0: good, 1: faulty, 2: wrong use.");
    parser.addHelpOption();
    const QCommandLineOption render("render", "Writes the window as a picture.", "out.png");
    const QCommandLineOption states("states", "Writes all states side by side.", "out.png");
    parser.addOptions({render, states});
    parser.addPositionalArgument("KIND", skinKindWords().join(", "));
    parser.addPositionalArgument("FILE...", "The skins.");
    parser.process(application);
    const QStringList arguments = parser.positionalArguments();
    const std::optional<SkinKind> kind = skinKindOf(arguments.value(0));
    const bool pictures = parser.isSet(render) || parser.isSet(states);
    if (!kind || arguments.size() < 2 || (pictures && arguments.size() != 2)) {
        say(stderr, parser.helpText());
        return Unusable;
    }
    ExitCode result = Good;
    for (const QString& path : arguments.mid(1))
        result = std::max(result, checkFile(path, *kind));
    if (pictures)
        result = std::max(result,
                          draw(arguments[1], *kind, {parser.value(render), parser.value(states)}));
    return result;
}
