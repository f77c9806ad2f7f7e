#pragma once

#include <string>

// What the process asks of the file system, made to fail. The calls are defined in the program itself, so those of Qt and
// of all other libraries come by too. Any thread may call them.
namespace failing_files {

enum class Call
{
    Open,
    Write,
    Rename,
    MakeFolder,
    Cut,
    Sync
};

struct Fault
{
    Call call;
    int nth; // counted from 1 since it was armed
    int code;
    bool lasts =
        false; // all further ones fail too, and of what the nth should write half is taken: a disk that is full
};

void watch(const std::string& folder); // once, before the first fault: calls on other files neither fail nor count
void arm(const Fault& fault);
int failures(); // of the fault that was armed last
void disarm();

} // namespace failing_files
