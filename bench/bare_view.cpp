// The least program that shows pages: one engine view per address, the first one visible.
//   bare_view address...
//   bare_view --more address     opens, in addition, the addresses of each line that comes on the standard input; one
//                                behind a "+" comes to the front

#include <unistd.h>
#include <QApplication>
#include <QFile>
#include <QSocketNotifier>
#include <QStackedWidget>
#include <QUrl>
#include <QWebEngineView>

namespace {

// The room that a page has in the program's window, on the 800 x 800 screen of a run without one.
constexpr QSize PageSize(780, 560);

void Add(QStackedWidget &window, QString address) {
  const bool isInFront = address.startsWith(u'+');
  if (isInFront) address.remove(0, 1);
  auto *view = new QWebEngineView(&window);
  view->resize(PageSize);  // A hidden page is laid out like the visible one.
  window.addWidget(view);
  view->load(QUrl(address));
  if (isInFront) window.setCurrentWidget(view);
}

// One line in each turn of the event loop; unbuffered, so that what is not read yet still wakes the loop.
void FollowInput(QStackedWidget &window) {
  auto *input = new QFile(&window);
  if (!input->open(STDIN_FILENO, QFile::ReadOnly | QFile::Unbuffered)) return;
  auto *notifier = new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, &window);
  QObject::connect(notifier, &QSocketNotifier::activated, &window, [&window, input, notifier] {
    const QString line = QString::fromLatin1(input->readLine()).trimmed();
    if (line.isEmpty()) notifier->setEnabled(false);  // the end
    for (const QString &address : line.split(u' ', Qt::SkipEmptyParts)) Add(window, address);
  });
}

}  // namespace

int main(int argc, char **argv) {
  QApplication application(argc, argv);
  QStringList addresses = application.arguments().mid(1);
  const bool followInput = addresses.removeAll(QStringLiteral("--more")) > 0;
  if (addresses.size() == 1 && !followInput) {
    QWebEngineView view;
    view.resize(PageSize);
    view.load(QUrl(addresses.first()));
    view.show();
    return application.exec();
  }
  QStackedWidget window;
  window.resize(PageSize);
  for (const QString &address : addresses) Add(window, address);
  if (followInput) FollowInput(window);
  window.show();
  return application.exec();
}
