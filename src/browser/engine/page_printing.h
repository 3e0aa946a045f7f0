#pragma once

#include <memory>
#include <QObject>
#include <QPointer>

class QPrinter;
class QWebEngineView;
class TEngine;
class TPrintPreview;

// Prints the page of one view. One job runs at a time; while it does, further requests do nothing. Without a printer
// only printing without asking has nothing to do: the dialog still prints to a file.
class TPagePrinting final : public QObject {
  Q_OBJECT

 public:
  TPagePrinting(TEngine &engine, QWebEngineView *view, QObject *parent);
  ~TPagePrinting() override;

  [[nodiscard]] bool IsBusy() const;

  void Print();
  // The page itself asks. After the user has said no, it is not heard again until Forgive.
  void PrintForPage();
  void Forgive() { m_refusedByUser = false; }
  void PrintWithoutAsking();
  void Preview();

  // The dialog for the layout that all of these use. It belongs to `owner` and needs no page.
  static void SetUpPage(TEngine &engine, QWidget *owner);

 private:
  [[nodiscard]] std::unique_ptr<QPrinter> NewPrinter() const;
  void Run();
  void ShowPreview(const QByteArray &pdf);

  TEngine &m_engine;
  QWebEngineView *m_view = nullptr;
  std::unique_ptr<QPrinter> m_printer;
  QPointer<QWidget> m_dialog;
  bool m_running = false;
  bool m_preparing = false;
  bool m_refusedByUser = false;
};
