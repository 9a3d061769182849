// The list of associated clients as the agent reads it: a file of addresses and a file of records.
#include "common/identity.h"
#include "common/log.h"
#include "common/text.h"
#include "ops/operations.h"
#include "orlo/exports.h"

#include <cstdio>

using orlo::MacText;

namespace {

FILE* create_file(const char* operation, const char* path) {
    FILE* file = path == nullptr ? nullptr : fopen(path, "w");
    if (file == nullptr) {
        LOG_TRACE_FOR(operation, "error: failed to create file '%s'\n", orlo::shown(path));
    }
    return file;
}

void write_line(FILE* file, int radio, int vap, const assoc_client_node* client) {
    fprintf(file, "%d,%d", radio, vap);
    for (; client != nullptr; client = client->next) {
        fputc(',', file);
        fputs(MacText(client->record.sta_mac).c_str(), file);
    }
    fputc('\n', file);
}

} // namespace

void write_assoc_client_to_file(const char* path) {
    LOG_TRACE("Entering .... \n");
    FILE* file = create_file(__func__, path);
    if (file == nullptr) {
        return;
    }
    for (int radio = 0; radio < orlo::radio_count; radio++) {
        for (int vap = 0; vap < orlo::vaps_per_radio; vap++) {
            const assoc_client_node* first = assoc_client_list[orlo::vap_slot(radio, vap)];
            if (first != nullptr) {
                write_line(file, radio, vap, first);
            }
        }
    }
    fclose(file);
    LOG_TRACE("End .... \n");
}

void write_assoc_client_detail_to_file(const char* path) {
    LOG_TRACE("Entering .... \n");
    FILE* file = create_file(__func__, path);
    if (file == nullptr) {
        return;
    }
    for (const assoc_client_node* client : assoc_client_list) {
        for (; client != nullptr; client = client->next) {
            fwrite(&client->record, sizeof client->record, 1, file);
            fflush(file); // a reader finds whole records
        }
    }
    fclose(file);
    LOG_TRACE("End .... \n");
}

int api_generate_assoc_client_file() {
    LOG_TRACE("Entering...\n");
    if (prepare_assoc_client_list() == 0) {
        write_assoc_client_to_file("/tmp/assoc_client");
        write_assoc_client_detail_to_file("/tmp/assoc_client_detail");
    }
    LOG_TRACE("End...\n");
    return 0;
}
