#pragma once

class QWidget;
class TLanguage;

// What is running: the versions of the program, of Qt and of the engine, with the engine's security patch level.
void ShowAboutDialog(const TLanguage &language, QWidget *parent);
