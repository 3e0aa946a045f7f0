#pragma once

#include <QBuffer>
#include <QDialog>
#include <QPdfDocument>

class QPdfView;
class TLanguage;

// The page as it would be printed: all sheets below each other, with zoom, print and save as PDF.
class TPrintPreview final : public QDialog {
  Q_OBJECT

 public:
  TPrintPreview(const TLanguage &language, const QByteArray &pdf, const QString &title, QWidget *parent);
  ~TPrintPreview() override;

  // Writes the sheets to `path`, whole or not at all.
  [[nodiscard]] bool SaveTo(const QString &path) const;

 Q_SIGNALS:
  void PrintRequested();

 private:
  void Zoom(qreal factor);
  void ChooseFile();

  const TLanguage &m_language;
  QString m_title;
  QBuffer m_pdf;
  QPdfDocument m_document;
  QPdfView *m_view = nullptr;
};
