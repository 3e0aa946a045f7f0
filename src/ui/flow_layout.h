#pragma once

#include <QLayout>
#include <vector>

// Lays its items one beside the other as long as there is room, and goes on in a further row below; each is as large as
// it wants to be. Read from right to left it begins at the right.
class TFlowLayout final : public QLayout {
  Q_OBJECT

 public:
  // Rows end at the trailing edge with `atEnd`, else they begin at the leading one. Distances are in pixels.
  explicit TFlowLayout(int distance, bool atEnd = false);
  ~TFlowLayout() override;

  void addItem(QLayoutItem *item) override;
  [[nodiscard]] int count() const override { return int(m_items.size()); }
  [[nodiscard]] QLayoutItem *itemAt(int index) const override;
  [[nodiscard]] QLayoutItem *takeAt(int index) override;
  // All in one row.
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSize() const override;
  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;
  void setGeometry(const QRect &place) override;

 private:
  // The height that it takes; items are moved with `moves`.
  int Arrange(const QRect &place, bool moves) const;

  std::vector<QLayoutItem *> m_items;
  int m_distance;
  bool m_atEnd;
};
