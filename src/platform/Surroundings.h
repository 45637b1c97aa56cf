#pragma once

#include <string>
#include <vector>

#include <QString>

/// What a process finds around it, in the form of its system; posix/ and windows/ each have an implementation.
namespace zth::platform {

/// An environment variable that names a file or a number; empty if it is not set.
QString VariableOf(const char* name);
void PutVariable(const char* name, const QString& text);

/// The words of the command line behind the program's name: the bytes given on POSIX, UTF-8 on Windows. Call it after
/// the application object has been created.
std::vector<std::string> Arguments(int argc, char** argv);

/// Lets standard output and standard error take UTF-8 with bare line feeds.
void PrepareStreams();

/// The ending of the file of the user's settings, with the point.
QString SettingsEnding();

}  // namespace zth::platform
