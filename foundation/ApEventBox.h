#pragma once
// The default display of deferred errors: a message box titled "Error" with the error
// icon and an OK button, owned by no window. Loading this library installs it; a program
// may call UseErrorMessageBox() to install it again after replacing it.

void UseErrorMessageBox();
