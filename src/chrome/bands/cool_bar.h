#pragma once

#include <initializer_list>
#include <QPointer>
#include <QWidget>
#include <utility>

#include "chrome/bands/band_arrangement.h"
#include "config/language_properties.h"

class TBandGrip;
class TLanguage;

// The band bar (cbCoolbar): bands with a grip each, which the user drags to another place or row, resizes, and breaks
// onto rows of their own, by mouse or by keyboard. It is as high as its rows. While a band is dragged the rows stay as
// they are, and only edges between bands move; a mark shows where it would go.
//
// A right click anywhere in it that nobody else takes is told by customContextMenuRequested.
class TCoolBar final : public QWidget, public TCaptionedBands {
  Q_OBJECT

 public:
  // `language` must outlive the bar.
  TCoolBar(const TLanguage &language, QWidget *parent);

  // Gives a band its contents, which belong to the bar from then on and are shown and hidden by it. A band without any
  // keeps its place in the arrangement and is not shown.
  void SetContent(TBand band, QWidget *content);
  [[nodiscard]] bool HasContent(TBand band) const { return m_contents[band] != nullptr; }

  void ShowBands(std::initializer_list<std::pair<TBand, bool>> bands);
  // The user's arrangement; which bands are shown is not a part of it.
  [[nodiscard]] const TBandArrangement &Arrangement() const { return m_bands; }
  void SetArrangement(const TBandArrangement &bands);
  // As narrow as it can be, or, when it is narrower than 100 pixels, as wide as the others in its row let it be.
  void ToggleSize(TBand band);

  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

  // What the form's translation sees: only the links bar has a caption.
  [[nodiscard]] int BandCount() const override { return ::BandCount; }
  [[nodiscard]] QString BandText(int band) const override;
  void SetBandText(int band, const QString &text) override;

 protected:
  bool event(QEvent *event) override;
  void resizeEvent(QResizeEvent *event) override;

 private:
  void Connect(TBandGrip *grip);
  [[nodiscard]] int RowHeight(const TBandArrangement::TRow &row) const;
  // The lower edges of the rows.
  [[nodiscard]] std::vector<int> Bottoms(const TBandArrangement::TRows &rows) const;
  void Measure();
  void Arrange();
  void Drag(TBand band, const QPoint &from, const QPoint &to);
  void EndDrag(TBand band, bool drop);
  void ShowMark();
  // The user has changed something by keyboard.
  void Changed();
  void OrderGrips();
  void Describe(const TBandArrangement::TRows &rows);
  [[nodiscard]] QRect Mirrored(const QRect &place) const;

  const TLanguage &m_language;
  TBandArrangement m_bands;
  TForEachBand<QPointer<QWidget>> m_contents;
  TForEachBand<TBandGrip *> m_grips;
  TForEachBand<bool> m_wanted;  // to be shown, once there are contents
  QWidget *m_mark;              // where a band that is dragged would go
  TBandArrangement m_before;    // the drag
  TBandDrop m_drop;
  bool m_isDragging = false;
  int m_height = 0;
};
