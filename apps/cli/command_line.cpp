#include "apps/cli/command_line.h"

#include <CLI/CLI.hpp>
#include <chrono>
#include <map>
#include <ostream>

#include "apps/cli/command_error.h"
#include "apps/cli/commands.h"
#include "apps/cli/exchange_commands.h"
#include "apps/cli/height_commands.h"
#include "apps/cli/keeping_commands.h"
#include "apps/cli/object_types.h"
#include "apps/cli/transform_commands.h"
#include "platform/storage/waiting.h"
#include "platform/ui/texts.h"

namespace RefframeCli {

using QvRefSystem::ObjectFileForm;

namespace {

constexpr const char* kAbout =
    "Keeps coordinate reference systems and what they are built from.\n"
    "DB is a folder, or a container when its name ends in \".qvdb\". OBJ is a key, epsg:CODE or "
    "name:TEXT.\n"
    "Exit status: 0 done, 1 the operation failed, 2 the arguments make no command.";

// A day, in seconds.
constexpr double kLongestWait = 86400;
// In the place of a type: files of mixed types.
constexpr const char* kAnyType = "any";

const std::map<std::string, ObjectFileForm> kForms{{"text", ObjectFileForm::kText},
                                                   {"xml", ObjectFileForm::kXml},
                                                   {"projjson", ObjectFileForm::kProjJson},
                                                   {"wkt2", ObjectFileForm::kWkt2}};

/// The arguments of all commands and the command that was chosen.
class Arguments {
 public:
  Arguments();
  void Parse(int argc, const char* const* argv) { app_.parse(argc, argv); }
  int Exit(const CLI::ParseError& error, Terminal terminal) {
    return app_.exit(error, terminal.out, terminal.err);
  }
  [[nodiscard]] int Execute(Terminal terminal);

 private:
  using Command = int (*)(const Request&, Terminal);

  // A command of the program, or of a group of commands.
  CLI::App& Add(CLI::App& group, const char* name, const char* about, Command command);
  CLI::App& Add(const char* name, const char* about, Command command);
  void AddDatabase(CLI::App& app);
  void AddType(CLI::App& app);
  void AddForm(CLI::App& app, const char* about);
  void AddOutput(CLI::App& app, const char* name, const char* about);
  void AddExchangeCommands();
  void AddKeepingCommands();
  void AddHeightCommands();
  CLI::App& AddHeightFile(CLI::App& heights, const char* name, const char* about, Command command);
  CLI::App& AddHeightWork(CLI::App& heights, const char* name, const char* about, Command command);
  void AddGeodesyCommands();

  CLI::App app_{kAbout, "refframe"};
  Request request_;
  std::string type_;
  std::string form_;
  int dimension_ = 0;
  Command command_ = nullptr;
};

Arguments::Arguments() {
  app_.set_version_flag("--version", "refframe " REFFRAME_VERSION);
  app_.require_subcommand(1);
  app_.failure_message([](const CLI::App*, const CLI::Error& error) {
    return std::string("refframe: ") + error.what() + " (refframe --help tells more)\n";
  });

  CLI::App& init =
      Add("init", "Makes a new database with the systems of the EPSG registry", InitDatabase);
  init.add_flag("--list", request_.listRefused,
                "Also print the systems that did not get in, and why");
  init.add_flag("--empty", request_.empty, "Without systems: only the types that objects are of");

  CLI::App& list = Add("list", "Lists the objects of a type: key, name, description", ListObjects);
  AddType(list);
  list.add_option("--search", request_.search, "Only names that hold this text, case aside");

  CLI::App& info = Add("info", "Describes an object", ShowInfo);
  AddType(info);
  info.add_option("OBJ", request_.object, "The object")->required();

  AddExchangeCommands();
  AddHeightCommands();
  AddGeodesyCommands();

  CLI::App& users =
      Add("used-by", "Lists what refers to an object: type, key, name, description", ListUsers);
  AddType(users);
  users.add_option("OBJ", request_.object, "The object")->required();

  CLI::App& remove = Add("delete", "Deletes an object to which nothing refers", DeleteObject);
  AddType(remove);
  remove.add_option("OBJ", request_.object, "The object")->required();
  remove.add_flag("--yes", request_.yes, "Do not ask");
  remove.add_flag("--force", request_.force, "Delete a height system although it is used");

  Add("recover", "Finishes or takes back what an interrupted program left; prints each step",
      RecoverInterrupted);
  AddKeepingCommands();
}

void Arguments::AddKeepingCommands() {
  CLI::App& check =
      Add("check", "Verifies files, references, codes and duplicates; prints errors, then notes",
          CheckWhole);
  CLI::Option* repair = check.add_flag(
      "--repair", request_.repair,
      "First mend what has one right answer: rows that deleted objects left, records that say the "
      "same, height files of no record; a backup is made before, and each step is printed");
  check.add_flag("--dry-run", request_.dryRun, "Print the steps of --repair and change nothing")
      ->needs(repair);

  CLI::App& copy =
      Add("copy", "Copies a database, also from a folder to a container or back", CopyWhole);
  copy.add_option("DB2", request_.otherDatabase, "The copy, where nothing stands yet")->required();

  CLI::App& backup = Add("backup",
                         "Makes a container with all that a database holds at one moment, "
                         "whoever writes to it",
                         BackUpWhole);
  backup.add_option("FILE", request_.otherDatabase, "The container (.qvdb)")->required();
  backup.add_flag("--force", request_.force, "Replace a file that is there");

  CLI::App& restore =
      Add(app_, "restore", "Puts a backup in the place of a database, which is kept beside",
          RestoreWhole);
  restore.add_option("FILE", request_.otherDatabase, "The backup")->required();
  AddDatabase(restore);

  CLI::App& salvage = Add("salvage",
                          "Makes a new database of what can be read of a damaged one: table, "
                          "records, what is lost",
                          SalvageWhole);
  salvage.add_option("DB2", request_.otherDatabase, "The new database")->required();
}

void Arguments::AddExchangeCommands() {
  CLI::App& write = Add("export", "Writes an object with all that it refers to", ExportObjects);
  AddType(write);
  write.add_option("OBJ", request_.object, "The object");
  write.add_flag("--all", request_.all, "Every object of the type, each to a file of its own");
  AddForm(write, "How it is written (text); projjson and wkt2 are for reference systems");
  write
      .add_option("--dimension", dimension_,
                  "How many axes a geodetic system has in projjson and wkt2 (2, or as its "
                  "EPSG code means)")
      ->check(CLI::IsMember({2, 3}));
  AddOutput(write, "-o,--output", "File to write to (standard output); with --all the folder");

  CLI::App& read = Add("import",
                       "Finds or adds the objects that files hold: key, found or "
                       "inserted, name. All get in, or none",
                       ImportFiles);
  std::vector<std::string> types = TypeArguments();
  types.emplace_back(kAnyType);
  read.add_option("TYPE", type_, "The type of the objects; any: each file's content tells it")
      ->required()
      ->check(CLI::IsMember(types));
  read.add_option("FILE", request_.files, "The files, - for standard input, or folders of files")
      ->required();
  AddForm(read, "How they are written; the content tells it otherwise");
  read.add_flag("--each", request_.each, "One by one: a file that is refused keeps no other out");
}

void Arguments::AddHeightCommands() {
  CLI::App& heights = *app_.add_subcommand("heights", "Works on tables of geoid undulations");
  heights.require_subcommand(1);
  AddHeightFile(heights, "info", "Tells the grid and the range of a file of heights",
                ShowHeightFile);
  CLI::App& view = AddHeightFile(
      heights, "view-as-text",
      "Prints the heights with the coordinates of their nodes: columns from west to east between "
      "tabs, a line for each row from the north down",
      ViewHeightFile);
  view.add_option("--window", request_.heights.window, "Only the nodes within these limits")
      ->expected(4)
      ->type_name("NORTH SOUTH EAST WEST");
  view.add_option("--step", request_.heights.step, "Shows one column and one row of so many (1)")
      ->check(CLI::PositiveNumber);

  CLI::App& interpolate =
      AddHeightWork(heights, "interpolate", "Makes a file of heights on the grid of another system",
                    InterpolateHeightFile);
  AddOutput(interpolate, "-o,--output", "File to write to");
  interpolate.get_option("--output")->required();
  CLI::App& approximate =
      AddHeightWork(heights, "approximate",
                    "Tells the constant that stands best for heights on the grid of a system",
                    ApproximateHeightFile);
  AddOutput(approximate, "--errors", "File for the differences, undulation less constant");
}

CLI::App& Arguments::AddHeightFile(CLI::App& heights, const char* name, const char* about,
                                   Command command) {
  CLI::App& app = Add(heights, name, about, command);
  app.add_option("FILE", request_.heights.file, "The file of heights")->required();
  return app;
}

CLI::App& Arguments::AddHeightWork(CLI::App& heights, const char* name, const char* about,
                                   Command command) {
  CLI::App& app = Add(heights, name, about, command);
  AddDatabase(app);
  HeightRequest& request = request_.heights;
  app.add_option("--source", request.file, "A file of heights; its grid lies in --plane");
  app.add_option("--plane", request.plane, "OBJ: the system in whose plane the file's grid lies");
  app.add_option("--source-system", request.system,
                 "OBJ: instead of a file, a system with heights of its own");
  app.add_option("--target", request.target, "OBJ: the system for which the heights are made")
      ->required();
  app.add_option("--grid", request.grid,
                 "Limits and cells in the plane of the target; without it the grid that covers "
                 "the ground of the source and keeps its resolution")
      ->expected(6)
      ->type_name("NORTH SOUTH EAST WEST CELL-NS CELL-EW");
  return app;
}

void Arguments::AddGeodesyCommands() {
  CLI::App& transform =
      Add("transform", "Moves points from one reference system to another", TransformPoints);
  transform.footer(
      "Standard input has a point on each line: two coordinates and, if wanted, a height, as "
      "decimals\nbetween blanks, in the axes, order, signs and units of FROM. Each line gives one "
      "of standard\noutput in those of TO, to a tenth of a micrometre on the Earth. Without a "
      "height 0 counts, and none\ncomes out. A point that fails gives * and the reason, and the "
      "exit status is 1 then. Blank lines and\nlines that begin with # come out as they are.");
  transform.add_option("FROM", request_.from, "The system of the points that come in")->required();
  transform.add_option("TO", request_.to, "The system of the points that go out")->required();
  transform.add_flag("--show-notation", request_.showNotation,
                     "Write the points in TO's own notation: degrees, minutes and seconds for "
                     "latitude and longitude");
  transform.add_flag("--line-by-line", request_.lineByLine,
                     "Answer each line at once, as at a terminal; slower");

  Add(app_, "geoids", "Lists the built-in geoids of this machine: code, name", ListGeoids);
}

CLI::App& Arguments::Add(CLI::App& group, const char* name, const char* about, Command command) {
  CLI::App& app = *group.add_subcommand(name, about);
  app.callback([this, command] { command_ = command; });
  return app;
}

CLI::App& Arguments::Add(const char* name, const char* about, Command command) {
  CLI::App& app = Add(app_, name, about, command);
  AddDatabase(app);
  return app;
}

void Arguments::AddDatabase(CLI::App& app) {
  app.add_option("DB", request_.database, "The database")->required();
  app.add_option("--wait", request_.wait,
                 "How long to wait for another program that writes to the database (30)")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.0, kLongestWait));
}

void Arguments::AddType(CLI::App& app) {
  app.add_option("TYPE", type_, "The type of the object")
      ->required()
      ->check(CLI::IsMember(TypeArguments()));
}

void Arguments::AddForm(CLI::App& app, const char* about) {
  std::vector<std::string> names;
  names.reserve(std::size(kForms));
  for (const auto& [name, form] : kForms)
    names.push_back(name);
  app.add_option("--form", form_, about)->check(CLI::IsMember(names));
}

void Arguments::AddOutput(CLI::App& app, const char* name, const char* about) {
  app.add_option(name, request_.output, about);
  app.add_flag("--no-clobber", request_.noClobber, "Refuse to replace a file that is there");
}

int Arguments::Execute(Terminal terminal) {
  if (!type_.empty() && type_ != kAnyType) request_.type = TypeOfArgument(type_);
  if (!form_.empty()) request_.form = kForms.at(form_);
  if (dimension_ != 0) request_.dimension = static_cast<QvRefSystem::Dimension>(dimension_);
  const std::chrono::duration<double> wait(request_.wait);
  QvPlatform::TimedWaiter waiter(std::chrono::duration_cast<std::chrono::milliseconds>(wait));
  const QvPlatform::WaiterScope waits(waiter);
  return command_(request_, terminal);
}

int RunParsed(int argc, const char* const* argv, Terminal terminal) {
  Arguments arguments;
  try {
    arguments.Parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    // Help and the version come this way too, with an exit code of 0.
    return arguments.Exit(error, terminal) == 0 ? kSucceeded : kMisused;
  }
  const int result = arguments.Execute(terminal);
  if (!terminal.out.flush()) throw CommandError("the output cannot be written");
  return result;
}

}  // namespace

int Run(int argc, const char* const* argv, Terminal terminal) {
  try {
    return RunParsed(argc, argv, terminal);
  } catch (const UsageError& error) {
    terminal.err << "refframe: " << error.what() << "\n";
    return kMisused;
  } catch (const std::exception& error) {
    const std::string reason = QvPlatform::ReasonOf(error);
    if (!reason.empty()) terminal.err << "refframe: " << reason << "\n";
    return kFailed;
  }
}

}  // namespace RefframeCli
