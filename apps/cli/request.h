#pragma once

#include <optional>
#include <string>
#include <vector>

#include "processors/object_descriptor.h"
#include "registry/object_files.h"

namespace RefframeCli {

/// What a command about heights asked for.
struct HeightRequest {
  /// Path of the file with the table; empty if `system` is given.
  std::string file;
  /// The system in whose plane the table of `file` lies.
  std::string plane;
  /// In place of a file: a system with heights of its own.
  std::string system;
  /// The system for which heights are made.
  std::string target;
  /// North, south, east, west, cell north-south, cell east-west; empty: derived from the source.
  std::vector<std::string> grid;
  /// North, south, east, west; empty: all.
  std::vector<double> window;
  /// One node is shown of so many along a row and along a column; at least 1.
  int step = 1;
};

/// What a command line asked for; a command reads the members that it has.
struct Request {
  /// Path of a folder or a container.
  std::string database;
  /// Where another database or a backup lies, or is made.
  std::string otherDatabase;
  /// How many seconds another program that writes to a database is waited for.
  double wait = 30;
  /// A new database gets no systems.
  bool empty = false;
  /// The object type; null for a command without one, and for files of mixed types.
  const QvRefSystem::ObjectDescriptor* type = nullptr;
  /// A key, epsg:CODE or name:TEXT, as it was typed.
  std::string object;
  /// A part of the names that are listed; none: all are.
  std::optional<std::string> search;
  /// The systems that did not get into a new database are printed too.
  bool listRefused = false;
  /// Every object of the type, in place of one.
  bool all = false;
  /// Questions are answered Yes beforehand.
  bool yes = false;
  /// What has one right answer is mended ahead of the check.
  bool repair = false;
  /// The steps of repair are told and not done.
  bool dryRun = false;
  /// What would be refused is done: an object goes although it is used, a file that stands in the
  /// way of a backup is replaced.
  bool force = false;
  /// The form of files; without it text is written, and the content tells what is read.
  std::optional<QvRefSystem::ObjectFileForm> form;
  /// Of a geodetic system; without it two, or what the EPSG code that names it means.
  std::optional<QvRefSystem::Dimension> dimension;
  /// Path of the file or the folder to write to; empty: standard output.
  std::string output;
  /// A file that is there is never replaced.
  bool noClobber = false;
  /// Paths of the files to read, and of folders with such; "-" is standard input.
  std::vector<std::string> files;
  /// Files are taken one by one, so that one that is refused keeps no other out.
  bool each = false;
  /// What a command about heights has besides.
  HeightRequest heights;
  /// The system of the points that come in.
  std::string from;
  /// The system of the points that go out.
  std::string to;
  /// Points are written in the notation of `to`.
  bool showNotation = false;
  /// Each point is answered at once.
  bool lineByLine = false;
};

}  // namespace RefframeCli
