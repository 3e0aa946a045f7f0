#pragma once

#include <QHash>
#include <QString>

#include "config/language_properties.h"

class QAbstractItemView;
class QStandardItem;
class QTreeWidgetItem;
class TIniFile;

// Replaces the marker texts of one form (see TLanguage::TranslateForm). For one use.
class TFormTranslator final {
 public:
  TFormTranslator(const TIniFile &texts, const QString &section) : m_texts(texts), m_section(section) {}

  void Translate(QObject *component);

 private:
  // The section that was chosen for the items of one component so far; empty before the first marked one. It is only
  // ever replaced: after a marked item also those without a marker are looked up, with their first two characters cut
  // off. Language files rely on that, so it stays.
  struct TItemSection {
    QString section;
  };

  [[nodiscard]] QString SectionOfMarker(const QString &value) const;
  [[nodiscard]] QString Lookup(const QString &section, const QString &value) const;
  // The text for a marker; empty when `value` is none or has no text.
  [[nodiscard]] QString TextOf(const QString &value) const;
  [[nodiscard]] QString ItemText(const QString &value, TItemSection &chosen) const;

  void TranslateProperties(QObject *component);
  void TranslateProperty(QObject *component, const TTextProperty &property) const;
  void TranslateDynamicProperties(QObject *component) const;
  void TranslateItems(QObject *component) const;
  void TranslateView(QAbstractItemView *view) const;
  void TranslateNodes(QTreeWidgetItem *parent, TItemSection &chosen) const;
  void TranslateNodes(QStandardItem *parent, TItemSection &chosen) const;
  // Header captions of a list's columns carry the section over, all other headers are taken each for itself.
  void TranslateHeader(QAbstractItemView *view, Qt::Orientation orientation, bool isCarriedOver) const;

  const TIniFile &m_texts;
  QString m_section;
  QHash<const QMetaObject *, QList<TTextProperty>> m_properties;
};
