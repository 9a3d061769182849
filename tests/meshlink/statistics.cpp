// SPDX-License-Identifier: MIT
#include "meshlink/statistics.h"

#include <jansson.h>

namespace orlo::test {

MeshStatistics::MeshStatistics() {
    start_station();
    carry(0, 0, 0, 0);
    answer_assoclist(association(child, "780.0", "866.5"));
}

void MeshStatistics::carry(long long child_received, long long child_sent,
                           long long parent_received, long long parent_sent) {
    answer_all_sta(station(child, std::to_string(child_received), std::to_string(child_sent)));
    answer_net_dev(
        "  eth0: 5 1 0 0 0 0 0 0 6 1 0 0 0 0 0 0\n mesh0: " + std::to_string(parent_received) +
        " 100 1 2 3 4 5 6 " + std::to_string(parent_sent) + " 200 7 8 9 10 11 12\n");
}

std::string MeshStatistics::report_of(const std::string& vap_rates, const std::string& sta_rates) {
    const std::string speed = R"(,"Link Speed":908591104)"; // 866.5 Mbit/s
    return R"({"ML VAP":[{"MAC Address":"04:11:22:33:44:40","Radio ID":1,"VAP ID":1,)" + vap_rates +
           speed + R"(}],"ML STA":[{"Radio ID":1,"VAP ID":1,)" + sta_rates + speed + "}]}";
}

std::string MeshStatistics::rates(const std::string& sent, const std::string& received) {
    return R"("Bytes Transmitted":)" + sent + R"(,"Bytes Received":)" + received;
}

std::string MeshStatistics::part(const char* name) {
    json_t* report = ops.create_ml_statistics_report();
    json_t* kept = json_incref(json_object_get(report, name));
    json_decref(report);
    return text_of(kept);
}

std::string MeshStatistics::speed_command(const std::string& interface, const std::string& chosen) {
    return "iwinfo " + interface + " assoclist | " + chosen +
           " | awk '{if(NR%3==1){ORS=\" \"; print $1}else if(NR%3==2){ORS=\" \"; print $2}"
           "else{ORS=\"\\n\"; print$2}}'";
}

} // namespace orlo::test
