#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""A Modbus device for the communication tests, served by Debian's python3-pymodbus.

    modbus_device.py tcp            Modbus TCP on 127.0.0.1, on a free port
    modbus_device.py rtu DEVICE     Modbus RTU (9600 8N1) on a serial device, e.g. a socat pty

Unit 1 holds ten holding registers 100, 101, ... 109 at addresses 0 to 9. Once it listens the
device prints "ready PORT" (the TCP port, or 0 for RTU) on one line. It serves until it is
terminated.
"""
import asyncio
import logging
import sys

from pymodbus.datastore import (ModbusSequentialDataBlock, ModbusServerContext,
                                ModbusSlaveContext)
from pymodbus.server.async_io import ModbusSerialServer, ModbusTcpServer
from pymodbus.transaction import ModbusRtuFramer, ModbusSocketFramer


def context():
    block = ModbusSequentialDataBlock(0, [100 + i for i in range(10)])
    unit = ModbusSlaveContext(hr=block, zero_mode=True)
    return ModbusServerContext(slaves={1: unit}, single=False)


async def main():
    logging.basicConfig(level=logging.CRITICAL)
    if len(sys.argv) >= 2 and sys.argv[1] == "tcp":
        server = ModbusTcpServer(context(), framer=ModbusSocketFramer,
                                 address=("127.0.0.1", 0))
        asyncio.ensure_future(server.serve_forever())
        await server.serving
        port = server.server.sockets[0].getsockname()[1]
    elif len(sys.argv) >= 3 and sys.argv[1] == "rtu":
        server = ModbusSerialServer(context(), framer=ModbusRtuFramer, port=sys.argv[2],
                                    baudrate=9600, bytesize=8, parity="N", stopbits=1,
                                    timeout=0.01)
        await server.start()
        port = 0
    else:
        print(__doc__, file=sys.stderr)
        sys.exit(2)
    print("ready %d" % port, flush=True)
    await asyncio.Event().wait()


asyncio.run(main())
