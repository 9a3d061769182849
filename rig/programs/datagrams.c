// SPDX-License-Identifier: MIT
/*
 * Receives datagrams at a port of this machine and prints each as a line of hexadecimal digits.
 *
 * usage: datagrams PORT COUNT SECONDS
 *   Ends after COUNT datagrams, or with status 1 when none comes for SECONDS.
 */
#include <arpa/inet.h>
#include <netinet/in.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

int main(int count, char** words) {
    if (count != 4) {
        fprintf(stderr, "usage: datagrams PORT COUNT SECONDS\n");
        return 2;
    }
    struct sockaddr_in address = {
        .sin_family = AF_INET,
        .sin_port = htons((unsigned short)atoi(words[1])),
        .sin_addr.s_addr = htonl(INADDR_LOOPBACK),
    };
    const struct timeval patience = {.tv_sec = atoi(words[3])};
    const int receiver = socket(AF_INET, SOCK_DGRAM, 0);
    if (receiver < 0 ||
        setsockopt(receiver, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience) != 0 ||
        bind(receiver, (struct sockaddr*)&address, sizeof address) != 0) {
        perror("datagrams");
        return 2;
    }
    for (int wanted = atoi(words[2]); wanted > 0; wanted--) {
        unsigned char bytes[65536];
        const ssize_t size = recv(receiver, bytes, sizeof bytes, 0);
        if (size < 0) {
            return 1;
        }
        for (ssize_t i = 0; i < size; i++) {
            printf("%02x", bytes[i]);
        }
        putchar('\n');
    }
    close(receiver);
    return 0;
}
