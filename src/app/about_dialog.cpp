#include "app/about_dialog.h"

#include <QApplication>
#include <QDialog>

#include "browser/engine/engine.h"
#include "config/language.h"
#include "ui_about_dialog.h"

namespace {

constexpr int ImageSize = 64;  // pixels

QString Versions(const TLanguage &language) {
  const QString lines[] = {
      language.Text("ABOUT", "Version").arg(QApplication::applicationVersion()),
      language.Text("ABOUT", "QtVersion").arg(QString::fromLatin1(qVersion())),
      language.Text("ABOUT", "EngineVersion").arg(TEngine::Version()),
      language.Text("ABOUT", "SecurityPatch").arg(TEngine::SecurityPatchVersion()),
  };
  QString text;
  for (const QString &line : lines) text += (text.isEmpty() ? QString() : QStringLiteral("\n")) + line;
  return text;
}

}  // namespace

void ShowAboutDialog(const TLanguage &language, QWidget *parent) {
  QDialog dialog(parent);
  Ui::TfrmAbout ui;
  ui.setupUi(&dialog);
  language.TranslateForm(&dialog, "ABOUT");
  ui.imgProgram->setPixmap(QIcon(QStringLiteral(":/icons/zarvela.svg")).pixmap(ImageSize));
  QFont bold = dialog.font();
  bold.setBold(true);
  bold.setPointSizeF(bold.pointSizeF() * 1.4);
  ui.lblProgram->setFont(bold);
  ui.lblProgram->setText(QApplication::applicationDisplayName());
  ui.lblVersions->setText(Versions(language));
  dialog.exec();
}
