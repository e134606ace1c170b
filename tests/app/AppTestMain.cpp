// The desktop app's tests, headless (offscreen platform), in one program: each suite is a
// QtTest object run in turn. Real worker processes (the `quillet` program) do every analysis and
// job; nothing touches the user's own settings or files.
#include "app/AppTests.hpp"

#include <QApplication>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    // The English plurals ("1 page", "4 pages") come from the translation built into the app.
    if (!quillet::QuilletApp::installTranslations(QStringLiteral("en"))) {
        return 3;
    }
    int failures = 0;
    for (const auto& make : quillet::test::appSuites()) {
        const auto suite = make();
        failures += QTest::qExec(suite.get(), argc, argv);
    }
    return failures == 0 ? 0 : 1;
}
