#pragma once

#include <optional>
#include <string>
#include <vector>

#include "apps/cli/command_line.h"
#include "apps/cli/object_files.h"
#include "processors/object_descriptor.h"

namespace RefframeCli {

/// What a command about heights asked for.
struct HeightRequest {
  /// The file with the table, and the system in whose plane it lies.
  std::string file;
  std::string plane;
  /// In place of a file: a system with heights of its own.
  std::string system;
  std::string target;
  /// North, south, east, west, cell north-south, cell east-west; empty: derived from the source.
  std::vector<std::string> grid;
  /// North, south, east, west; empty: all.
  std::vector<double> window;
  /// One node is shown of so many along a row and along a column.
  int step = 1;
};

/// What a command line asked for; a command reads the members that it has.
struct Request {
  std::string database;
  const QvRefSystem::ObjectDescriptor* type = nullptr;
  std::string object;
  std::optional<std::string> search;
  bool listRefused = false;
  bool all = false;
  bool yes = false;
  std::optional<ObjectForm> form;
  /// Of a geodetic system; without it two, or what the EPSG code that names it means.
  std::optional<QvRefSystem::Dimension> dimension;
  std::string output;
  std::vector<std::string> files;
  HeightRequest heights;
  /// The two systems of a transformation.
  std::string from;
  std::string to;
  bool showNotation = false;
  bool lineByLine = false;
};

// Each command gives kSucceeded or kFailed, or throws CommandError or UsageError.

/// Makes a new database with the systems of the EPSG registry.
int InitDatabase(const Request& request, Terminal terminal);
/// A line for each object: key, name and description between tabs.
int ListObjects(const Request& request, Terminal terminal);
int ShowInfo(const Request& request, Terminal terminal);
int ExportObjects(const Request& request, Terminal terminal);
/// A line for each file that got in: key, "found" or "inserted", and name between tabs.
int ImportFiles(const Request& request, Terminal terminal);
/// A line for each user: type, key, name and description between tabs.
int ListUsers(const Request& request, Terminal terminal);
int DeleteObject(const Request& request, Terminal terminal);
/// Moves the points of standard input from one system to another, a line out for each line in;
/// kFailed if one of them failed.
int TransformPoints(const Request& request, Terminal terminal);
/// A line for each built-in geoid: code and name with a tab between.
int ListGeoids(const Request& request, Terminal terminal);
/// A line for each finding; kFailed if there is one.
int CheckWhole(const Request& request, Terminal terminal);

}  // namespace RefframeCli
