// The least program that shows pages: one engine view per address, the first one visible.
//   bare_view address...

#include <QApplication>
#include <QStackedWidget>
#include <QUrl>
#include <QWebEngineView>

namespace {

// The room that a page has in the program's window, on the 800 x 800 screen of a run without one.
constexpr QSize PageSize(780, 560);

}  // namespace

int main(int argc, char **argv) {
  QApplication application(argc, argv);
  const QStringList addresses = application.arguments().mid(1);
  if (addresses.size() == 1) {
    QWebEngineView view;
    view.resize(PageSize);
    view.load(QUrl(addresses.first()));
    view.show();
    return application.exec();
  }
  QStackedWidget window;
  window.resize(PageSize);
  for (const QString &address : addresses) {
    auto *view = new QWebEngineView(&window);
    view->resize(PageSize);  // A hidden page is laid out like the visible one.
    window.addWidget(view);
    view->load(QUrl(address));
  }
  window.show();
  return application.exec();
}
