// How a scripting language starts the library, and finds the application that it runs in.
#ifndef ORRERY_START_UP_H
#define ORRERY_START_UP_H

class Project;

// The project that the application has open, or null; the library's. Any thread.
Project* getCurrentProject();

// Whether an application said that it embeds the interpreter.
bool isEmbedded();

// Called once, with the interpreter's lock held, before any object crosses into the language: from then on the
// destructors of the object classes tell the binding runtime that their object is going, and Ctrl-C cancels long
// operations where it would interrupt a script.
void pyBootstrap();

// Called when the interpreter ends: from then on destructors call no hook.
void pyCleanup();

#endif
