#pragma once

class QWidget;
class TFolderEditor;
class TFolderView;
class TLanguage;

// Asks for a name, makes a folder of it in the one that is current in `folders`, and turns to it; a failure is told.
// `window` owns the dialogs, and what else is given goes with it.
void MakeNewFolder(QWidget *window, const TLanguage &language, TFolderView &folders, TFolderEditor &editor);
