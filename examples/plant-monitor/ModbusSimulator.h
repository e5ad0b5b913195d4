// SPDX-License-Identifier: MIT
#pragma once

// A simulated Modbus device for the plant monitor: RTU frames (CRC-16/MODBUS) over TCP on
// 127.0.0.1, function 3 "read holding registers" for unit 1, served on a thread of its own, one
// connection at a time. It misbehaves on purpose, as field devices do: every n-th reply carries a
// wrong CRC, every n-th is cut short, and every n-th request is answered by closing the
// connection, so that the monitor's bad-frame counting and link renewal are exercised.
#include <atomic>
#include <thread>

class ModbusSimulator
{
public:
    ModbusSimulator(int badCrcEvery, int shortEvery, int dropEvery);
    ~ModbusSimulator();

    /// Listens on a free loopback port and starts serving; false when no port could be had.
    bool start();
    /// Stops serving and waits for the thread.
    void stop();
    int port() const { return m_port; }
    /// The register values the device holds at request number `request` (1, 2, ...).
    static int registerValue(int address, int request)
    {
        return 1000 + address * 10 + request % 10;
    }

private:
    void serve();
    void serveConnection(int fd);

    int m_badCrcEvery;
    int m_shortEvery;
    int m_dropEvery;
    int m_listener = -1;
    int m_port = 0;
    int m_requests = 0;
    std::atomic<bool> m_stop {false};
    std::thread m_thread;
};
