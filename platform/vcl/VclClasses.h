#pragma once
// Registers every class of the controls layer with the class registry, so that form
// streams can name them (the standard design package calls this).

void RegisterVclClasses();
