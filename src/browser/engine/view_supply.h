#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

#include "platform/memory.h"

class QWebEngineView;
class QWidget;
class TEngine;

// Where the views of pages come from. One can be kept ready, blank and never shown: it has its renderer already, so
// that the next page is asked for in less than half the time. It is no tab, and is given up when memory is short.
class TViewSupply final : public QObject {
  Q_OBJECT

 public:
  // Milliseconds without any page beginning or ending to load after which the next view is made.
  static constexpr int IdleTime = 1000;

  // `engine` must outlive this object.
  explicit TViewSupply(TEngine &engine, bool (*memoryIsShort)() = MemoryIsShort);
  ~TViewSupply() override;

  // Makes a view at once and keeps one ready from now on, as a hidden child of `window`. Called before the window is
  // shown it also gives the window the surface that pages need: with the first page behind it the toolkit would replace
  // the native window, and desktops forget that the old one was maximised or full screen.
  void KeepReady(QWidget *window);
  // The view that is ready, else a new one. It is hidden, has no owner but the caller, and its page is a TEnginePage.
  [[nodiscard]] QWebEngineView *Take();
  // A new one in any case, whose page has done nothing yet: for a window that another page asked for.
  [[nodiscard]] QWebEngineView *Make() const;
  [[nodiscard]] bool IsReady() const { return !m_ready.isNull(); }
  // Deletes the one that is ready; there will be another when there is memory for it.
  void GiveUp();
  // A page has begun or ended to load.
  void PutOff();

 private:
  void Look();
  void MakeReady();

  TEngine &m_engine;
  bool (*m_memoryIsShort)();
  QPointer<QWidget> m_window;
  QPointer<QWebEngineView> m_ready;
  QTimer m_look{this};
};
