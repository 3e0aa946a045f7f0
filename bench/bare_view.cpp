// The least program that shows pages: one engine view per address, the first one visible.
//   bare_view address...

#include <QApplication>
#include <QStackedWidget>
#include <QUrl>
#include <QWebEngineView>

int main(int argc, char **argv) {
  QApplication application(argc, argv);
  const QStringList addresses = application.arguments().mid(1);
  if (addresses.size() == 1) {
    QWebEngineView view;
    view.resize(1024, 740);
    view.load(QUrl(addresses.first()));
    view.show();
    return application.exec();
  }
  QStackedWidget window;
  window.resize(1024, 740);
  for (const QString &address : addresses) {
    auto *view = new QWebEngineView(&window);
    window.addWidget(view);
    view->load(QUrl(address));
  }
  window.show();
  return application.exec();
}
