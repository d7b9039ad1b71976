// What the views of the drawing readers share: the drawing named on the command line, paths in the
// machine's own form, and printing the JSON document.
#pragma once

#include "Views.h"
#include "drawing/access/QxDwgOpen.h"
#include "support/CArray.h"

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

// Keys keep the order in which they are set.
using ReaderJson = nlohmann::ordered_json;

// The logic path of a drawing given by a person.
CString DrawingArgumentPath(const std::string& file);
// A logic path as the machine writes it: slashes, the names on disk where it exists; a path with no
// native form (a drive letter) as written.
std::string NativePathText(const CString& logicPath);
// Each "|"-separated piece in the machine's form, joined by "|" again.
std::string NativePathListText(const CString& logicPaths);
ReaderJson StringsJson(const CStringArray& strings);
// Prints the document on standard output; the view ran.
int PrintReaderJson(const ReaderJson& document);
// Says on standard error that the drawing cannot be read; the input was unreadable.
int ComplainUnreadable(const std::string& file);

// A view that takes one drawing: its sub-command has the required argument FILE.
std::function<std::function<int()>(CLI::App&)> DrawingViewSetup(std::function<int(const std::string& file)> show);
