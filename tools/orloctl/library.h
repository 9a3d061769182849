// SPDX-License-Identifier: MIT
// The vendor library, loaded as the agent loads it: dlopen, then Vendor_Ops by name.
#pragma once

#include <string>

#include "exit.h"
#include "orlo/vendor_ops.h"

namespace orloctl {

struct CommandLine;

// Stays loaded to the end of the process: children that an operation left behind may still run in
// it.
class Library {
public:
    // Throws a Refusal when the file cannot be loaded or is no vendor library.
    explicit Library(const std::string& path);

    const vendor_ops& ops() const { return *ops_; }

    // Another exported name of the library, by its type: symbol<int(const
    // char*)>("uciCommitValue").
    template <class Type>
    Type& symbol(const char* name) const {
        // dlsym's answer may be a function; the C library promises that the conversion works.
        return *reinterpret_cast<Type*>(required(name));
    }

private:
    void* required(const char* name) const;

    std::string path_;
    void* handle_;
    const vendor_ops* ops_;
};

// Whether this is one, real or virtual.
bool is_access_point();

// The library that the command line, the environment (ORLO_LIBRARY), orloctl's own folder or the
// loader names, in this order. Refused where there is no access point, unless --here insists.
Library open_library(const CommandLine& line);

// The same library wherever this is: for an access point that is entered afterwards.
Library load_library(const CommandLine& line);

} // namespace orloctl
