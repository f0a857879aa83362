#pragma once
// The program's own windows read their components from layouts built into the program
// (resources/NAME.dfm, form text), as a Delphi form reads its form resource: classes
// come from the window's published fields, event handlers bind by name to its published
// methods. A window whose class derives from another window class with a layout reads
// the ancestor's layout first, then its own, which starts with "inherited" and changes
// or adds to what the ancestor made.
//
//   TFrm_Example::TFrm_Example(TComponent* owner) : TForm(owner) {
//     ReadLayouts(this);   // in the constructor of the most derived class only
//     DoCreate();
//   }
//
// A layout that does not read (a class or handler that does not exist, a bad value)
// raises: it is a defect of the program, never something to go past.

class TComponent;

// Reads, into `root`, the layout of every class from TComponent down to root's own class
// that has one, the most distant ancestor first. Returns how many were read.
int ReadLayouts(TComponent* root);
