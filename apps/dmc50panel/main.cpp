// Parts of the operator panel on a PC's desktop; see --help.
#include "apps/dmc50panel/options.h"
#include "apps/dmc50panel/view.h"

#include <QApplication>

#include <cstdio>

namespace {

constexpr int FailureExitStatus = 1;

/** The program's exit status. */
int save(const QPixmap& picture, const QString& file) {
    if (picture.save(file))
        return 0;
    std::fprintf(stderr, "%s: the picture could not be written\n", qPrintable(file));
    return FailureExitStatus;
}

} // namespace

int main(int argc, char** argv) {
    const ParsedOptions parsed = parseOptions(argc, argv);
    if (parsed.exit_status)
        return *parsed.exit_status;
    QApplication application(argc, argv);
    const std::unique_ptr<View> view = makeView(parsed.options);
    const QString& file = parsed.options.screenshot_file;
    if (!file.isEmpty())
        QObject::connect(view.get(), &View::settled,
                         [&] { QApplication::exit(save(view->picture(), file)); });
    view->show();
    return QApplication::exec();
}
