#pragma once

#include "Figures.h"

#include <string>

/// What to do with each file. Writing, saving and closing need an open file, so their cost includes opening it anew
/// each time, but not their figures.
struct Workloads {
    bool open = false;
    bool tokens = false; ///< look at each and convert numbers, with nothing of ours
    bool write = false;  ///< to memory
    bool save = false;   ///< to a file, after one edit
    bool close = false;
    bool inverse = false; ///< every inverse attribute of every instance
    bool memory = false;
    bool lazy = false; ///< look at little of it
    bool module = false;
    unsigned threads = 1; ///< that open files
};

/// All throw std::runtime_error where the work fails.

/// Fills in the times of opening, writing, saving and closing a file, and of reading its inverse attributes.
void measureSpeed(const std::string& path, int runs, const Workloads& workloads, FileFigures& figures);
/// Fills in what looking at every token of a file and converting every number takes, where nothing is checked or built
/// and the file is in memory: no reader is faster, and the figure tells how fast the machine is at that time.
void measureTokens(const std::string& path, int runs, FileFigures& figures);
/// Fills in how much memory an open file takes, seen in a fresh child process. Counts what this process holds in memory
/// when it is called, so it should be called before any other work.
void measureMemory(const std::string& path, const Workloads& workloads, FileFigures& figures);
/// Fills in what looking at little of a lazily opened file costs. To be called early, as measureMemory().
void measureLazily(const std::string& path, int runs, FileFigures& figures);
/// Each run in a process that has not had the module before.
ModuleFigures measureModule(int runs);
