#include "config/form_translator.h"

#include <QAction>
#include <QComboBox>
#include <QHeaderView>
#include <QListWidget>
#include <QPointer>
#include <QStandardItemModel>
#include <QTabBar>
#include <QTableView>
#include <QTabWidget>
#include <QToolBox>
#include <QTreeWidget>

#include "config/language.h"
#include "store/ini_file.h"

namespace {

constexpr const char *GlobalSection = "GLOBAL";
constexpr qsizetype MarkerLength = 2;

// Items of one kind of widget, each with a text of its own.
template <typename TWidget>
struct TItemTexts {
  QString (TWidget::*get)(int) const;
  void (TWidget::*set)(int, const QString &);
};

}  // namespace

QString TFormTranslator::SectionOfMarker(const QString &value) const {
  if (value.size() <= MarkerLength) return {};
  if (value.startsWith(u"__")) return m_section;
  if (value.startsWith(u"~~")) return GlobalSection;
  return {};
}

QString TFormTranslator::Lookup(const QString &section, const QString &value) const {
  if (section.isEmpty() || value.size() <= MarkerLength) return {};
  return m_texts.Value(section, value.sliced(MarkerLength));
}

QString TFormTranslator::TextOf(const QString &value) const {
  return Lookup(SectionOfMarker(value), value);
}

QString TFormTranslator::ItemText(const QString &value, TItemSection &chosen) const {
  const QString section = SectionOfMarker(value);
  if (!section.isEmpty()) chosen.section = section;
  return Lookup(chosen.section, value);
}

void TFormTranslator::Translate(QObject *component) {
  TranslateProperties(component);
  TranslateItems(component);
  // A new text may make or remove helper objects of the component's own.
  QList<QPointer<QObject>> owned;
  owned.reserve(component->children().size());
  for (QObject *child : component->children()) owned.append(child);
  for (const QPointer<QObject> &child : std::as_const(owned)) {
    if (child != nullptr) Translate(child);
  }
}

void TFormTranslator::TranslateProperties(QObject *component) {
  const QMetaObject *metaObject = component->metaObject();
  auto known = m_properties.find(metaObject);
  if (known == m_properties.end()) known = m_properties.insert(metaObject, TextProperties(*metaObject));
  for (const TTextProperty &property : std::as_const(*known)) TranslateProperty(component, property);
  TranslateDynamicProperties(component);
}

void TFormTranslator::TranslateProperty(QObject *component, const TTextProperty &property) const {
  const QString text = TextOf(property.property.read(component).toString());
  if (text.isEmpty()) return;
  const QByteArrayView name = property.property.name();
  if (name == "toolTip" || name == "accessibleName") {
    property.property.write(component, TLanguage::ShortHint(text));
    // Where the form gives no status text of its own, the tool tip's long part is it.
    if (name == "toolTip" && text.contains(u'|') && component->property("statusTip").toString().isEmpty()) {
      component->setProperty("statusTip", TLanguage::LongHint(text));
    }
  } else if (name == "statusTip" || name == "whatsThis" || name == "accessibleDescription") {
    property.property.write(component, TLanguage::LongHint(text));
  } else {
    property.property.write(component, text);
  }
}

// Designer forms keep what no widget has a property for (a file dialog's filter and title) in dynamic ones.
void TFormTranslator::TranslateDynamicProperties(QObject *component) const {
  const QList<QByteArray> names = component->dynamicPropertyNames();
  if (names.isEmpty()) return;
  for (const char *name : {"Caption", "Title", "Filter", "Hint", "Text"}) {
    if (!names.contains(name)) continue;
    const QString text = TextOf(component->property(name).toString());
    if (!text.isEmpty()) component->setProperty(name, text);
  }
}

void TFormTranslator::TranslateItems(QObject *component) const {
  const auto translateEach = [this](auto *widget, int count, auto texts) {
    for (int i = 0; i < count; ++i) {
      const QString text = TextOf((widget->*texts.get)(i));
      if (!text.isEmpty()) (widget->*texts.set)(i, text);
    }
  };
  if (auto *combo = qobject_cast<QComboBox *>(component)) {
    translateEach(combo, combo->count(), TItemTexts<QComboBox>{&QComboBox::itemText, &QComboBox::setItemText});
  } else if (auto *tabs = qobject_cast<QTabWidget *>(component)) {
    translateEach(tabs, tabs->count(), TItemTexts<QTabWidget>{&QTabWidget::tabText, &QTabWidget::setTabText});
    translateEach(tabs, tabs->count(), TItemTexts<QTabWidget>{&QTabWidget::tabToolTip, &QTabWidget::setTabToolTip});
  } else if (auto *bar = qobject_cast<QTabBar *>(component)) {
    translateEach(bar, bar->count(), TItemTexts<QTabBar>{&QTabBar::tabText, &QTabBar::setTabText});
    translateEach(bar, bar->count(), TItemTexts<QTabBar>{&QTabBar::tabToolTip, &QTabBar::setTabToolTip});
  } else if (auto *box = qobject_cast<QToolBox *>(component)) {
    translateEach(box, box->count(), TItemTexts<QToolBox>{&QToolBox::itemText, &QToolBox::setItemText});
    translateEach(box, box->count(), TItemTexts<QToolBox>{&QToolBox::itemToolTip, &QToolBox::setItemToolTip});
  } else if (auto *view = qobject_cast<QAbstractItemView *>(component)) {
    TranslateView(view);
  } else if (auto *bands = dynamic_cast<TCaptionedBands *>(component)) {
    TItemSection chosen;
    for (int i = 0; i < bands->BandCount(); ++i) {
      const QString text = ItemText(bands->BandText(i), chosen);
      if (!text.isEmpty()) bands->SetBandText(i, text);
    }
  }
}

// A tree view without decorated roots, but with captions over its columns, is a list: its rows are data. Only models
// that hold their items are walked: one that reads a disk or a data base fills in its own texts.
void TFormTranslator::TranslateView(QAbstractItemView *view) const {
  if (auto *tree = qobject_cast<QTreeView *>(view)) {
    const bool isList = !tree->rootIsDecorated() && !tree->isHeaderHidden();
    TranslateHeader(view, Qt::Horizontal, isList);
    if (isList) return;
    TItemSection chosen;
    if (auto *widget = qobject_cast<QTreeWidget *>(tree)) {
      TranslateNodes(widget->invisibleRootItem(), chosen);
    } else if (auto *model = qobject_cast<QStandardItemModel *>(tree->model())) {
      TranslateNodes(model->invisibleRootItem(), chosen);
    }
  } else if (qobject_cast<QTableView *>(view) != nullptr) {
    TranslateHeader(view, Qt::Horizontal, true);
    TranslateHeader(view, Qt::Vertical, false);
  } else if (auto *list = qobject_cast<QListWidget *>(view)) {
    for (int i = 0; i < list->count(); ++i) {
      const QString text = TextOf(list->item(i)->text());
      if (!text.isEmpty()) list->item(i)->setText(text);
    }
  }
}

void TFormTranslator::TranslateNodes(QTreeWidgetItem *parent, TItemSection &chosen) const {
  for (int i = 0; i < parent->childCount(); ++i) {
    QTreeWidgetItem *node = parent->child(i);
    const QString text = ItemText(node->text(0), chosen);
    if (!text.isEmpty()) node->setText(0, text);
    TranslateNodes(node, chosen);
  }
}

void TFormTranslator::TranslateNodes(QStandardItem *parent, TItemSection &chosen) const {
  for (int i = 0; i < parent->rowCount(); ++i) {
    QStandardItem *node = parent->child(i);
    if (node == nullptr) continue;
    const QString text = ItemText(node->text(), chosen);
    if (!text.isEmpty()) node->setText(text);
    TranslateNodes(node, chosen);
  }
}

void TFormTranslator::TranslateHeader(QAbstractItemView *view, Qt::Orientation orientation, bool isCarriedOver) const {
  QAbstractItemModel *model = view->model();
  if (model == nullptr) return;
  TItemSection chosen;
  const int count = orientation == Qt::Horizontal ? model->columnCount(view->rootIndex()) : model->rowCount();
  for (int i = 0; i < count; ++i) {
    const QString caption = model->headerData(i, orientation, Qt::DisplayRole).toString();
    const QString text = isCarriedOver ? ItemText(caption, chosen) : TextOf(caption);
    if (!text.isEmpty()) model->setHeaderData(i, orientation, text, Qt::DisplayRole);
  }
}
