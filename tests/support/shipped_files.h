#pragma once

// Makes the shipped language files visible to a test program, which does not lie beside them as the browser does: links
// them into the user's half of the program's folder.
void UseShippedLanguages();
