#include "Commands.h"
#include "Failure.h"
#include "Files.h"
#include "Interrupt.h"
#include "Output.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <csignal>
#include <exception>
#include <new>
#include <sstream>
#include <string>

using namespace kpifc;

static int run(int argc, char** argv) {
    CLI::App app("Reads and writes building models in STEP files (ISO 10303-21), schema IFC2X3.", "kpifc");
    app.set_version_flag("--version", "kpifc " KPIFC_VERSION);
    app.set_help_all_flag("--help-all", "Print the help of all subcommands and exit");
    app.require_subcommand(1);
    app.footer("Exit codes: 0 fine; 1 done, but the file has problems, which kpifc info lists;\n"
               "2 could not be done. Of kpifc diff: 0 no differences; 1 differences; 2 could not be done.\n"
               "With --strict a file that departs from the standard, however little, cannot be done; kpifc\n"
               "info and check still list all that is wrong.\n"
               "Stopped by Ctrl-C 130, by SIGTERM 143; files are then as they were. 141 where nobody reads\n"
               "the pipe that results go to.\n"
               "Results go to standard output, messages to standard error.\n\n"
               "Files may be compressed: gzip and zip archives with one .ifc file are read as they are,\n"
               "whatever their names. Written is what the name tells: .gz, .ifczip, .zip or plain. A file\n"
               "is replaced only when all of the new one is on the disk.\n\n"
               "Examples:\n"
               "  kpifc info house.ifc\n"
               "  kpifc check house.ifc\n"
               "  kpifc convert house.ifc -o house_new.ifc\n"
               "  kpifc dump house.ifc > house.jsonl\n"
               "  kpifc tree house.ifc\n"
               "  kpifc show house.ifc '#15'\n"
               "  kpifc get house.ifc '#15.FamilyName'\n"
               "  kpifc set house.ifc \"#15.FamilyName='Meier'\" -o house_new.ifc\n"
               "  kpifc new house.ifc IfcWall \"Name='North'\" -o house_new.ifc\n"
               "  kpifc erase house.ifc '#15' -o house_new.ifc\n"
               "  kpifc props house.ifc IfcWall --csv > walls.csv\n"
               "  kpifc header house.ifc time_stamp\n"
               "  kpifc diff house.ifc house_new.ifc\n"
               "  kpifc extract house.ifc IfcWall -o walls.ifc\n"
               "  kpifc report house.ifc -o report.html\n"
               "  kpifc schema IfcWall");
    Action action;
    addInfo(app, action);
    addCheck(app, action);
    addConvert(app, action);
    addDump(app, action);
    addTree(app, action);
    addShow(app, action);
    addGet(app, action);
    addSet(app, action);
    addNew(app, action);
    addErase(app, action);
    addProps(app, action);
    addHeader(app, action);
    addDiff(app, action);
    addExtract(app, action);
    addReport(app, action);
    for (CLI::App* command : app.get_subcommands({})) {
        command->add_flag("--strict", openOptions().strict,
                          "Fail where a file departs from the standard, however little");
    }
    addSchema(app, action); // reads no file
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& stop) { // help and version too
        std::ostringstream results;
        std::ostringstream messages;
        const int code = app.exit(stop, results, messages);
        Output output;
        output.text() = results.str();
        output.finish();
        if (code == 0) {
            return kFine;
        }
        tell("kpifc: " + messages.str());
        return kFailed;
    }
    return action();
}

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN); // files that are being written are to be cleared away
    catchInterrupts();
    try {
        return run(argc, argv);
    } catch (const std::bad_alloc&) {
        tell("kpifc: out of memory"); // which needs none
    } catch (const Interrupted& interrupted) {
        tell("kpifc: interrupted");
        return interrupted.exitCode();
    } catch (const NobodyReads&) {
        return 128 + SIGPIPE; // as of programs that die of it
    } catch (const std::exception& failure) {
        tell(std::string("kpifc: ") + failure.what());
    }
    return kFailed;
}
