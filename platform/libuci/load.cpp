// SPDX-License-Identifier: MIT
#include "load.h"

#include "parser.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace uci {

namespace {

/// Room for what a text turns into: itself and its elements. Having it in one block makes loading a
/// good deal faster.
size_t expected_size(const LockedFile& config) {
    const auto text = static_cast<size_t>(config.info.st_size);
    const size_t elements = text / kBytesPerElement * sizeof(uci_option);
    return text < size_t{1} << 20 ? text + elements + 512 : text;
}

/// The number of the line that an offset lies in. The text in memory is cut up by now, so this
/// reads the file again.
size_t line_at(const LockedFile& config, size_t offset) {
    size_t line = 1;
    size_t position = 0;
    char piece[1024];
    while (position < offset) {
        const size_t wanted = offset - position < sizeof(piece) ? offset - position : sizeof(piece);
        const ssize_t got = pread(config.file.fd(), piece, wanted, static_cast<off_t>(position));
        if (got <= 0) {
            break;
        }
        for (ssize_t i = 0; i < got; i++) {
            line += piece[i] == '\n' ? 1 : 0;
        }
        position += static_cast<size_t>(got);
    }
    return line;
}

void report(Context& ctx, const LockedFile& config, const ParseError& error) {
    ctx.parse_reason = error.reason;
    ctx.parse_line = line_at(config, error.offset);
    ctx.err = UCI_ERR_PARSE;
    if (ctx.flags & UCI_FLAG_PERROR) {
        uci_perror(&ctx, "uci");
    }
}

int read_package(uci_context* ctx, Package& package, const LockedFile& config,
                 const LockedFile* staging, Staged& staged) {
    Text text;
    ParseError error;
    int code = read_text(config, package.arena, text);
    if (code == UCI_OK) {
        code = parse_package(package, text.data, text.size, error);
    }
    if (code == UCI_ERR_PARSE) {
        report(own(ctx), config, error);
    }
    if (code == UCI_OK && package.has_delta) {
        code = read_staged(ctx, package, config.info, staging, staged);
    }
    return code;
}

/// Finding out that there is no file is faster than trying to open it.
bool may_exist(const char* path) {
    struct stat info {};
    return stat(path, &info) == 0 || errno != ENOENT;
}

int load_file(uci_context* ctx, const Source& source, Package*& out) {
    LockedFile config;
    Staged staged;
    const int code = open_locked(source.path, O_RDONLY, 0, LOCK_SH, config);
    return code == UCI_OK ? build_package(ctx, source, config, nullptr, staged, out) : code;
}

} // namespace

int build_package(uci_context* ctx, const Source& source, const LockedFile& config,
                  const LockedFile* staging, Staged& staged, Package*& out) {
    Package* const package = create_package(ctx, source.name, source.path, expected_size(config));
    if (!package) {
        return UCI_ERR_MEM;
    }
    package->uses_conf2 = source.uses_conf2;
    package->has_delta = source.has_delta;
    own(ctx).parse_reason = nullptr;
    const int code = read_package(ctx, *package, config, staging, staged);
    if (code != UCI_OK) {
        destroy_package(package);
        return code;
    }
    out = package;
    return UCI_OK;
}

int load_package(uci_context* ctx, const char* name, Package*& out) {
    if (*name == '/') {
        return load_file(ctx, {name, name, false, false}, out);
    }
    const Path overriding(ctx->conf2dir, name);
    if (may_exist(overriding.c_str())) {
        const int code = load_file(ctx, {name, overriding.c_str(), true, true}, out);
        if (code != UCI_ERR_NOTFOUND) {
            return code;
        }
    }
    const Path path(ctx->confdir, name);
    return load_file(ctx, {name, path.c_str(), false, true}, out);
}

} // namespace uci
