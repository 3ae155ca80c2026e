#ifndef RUNTIME_DRIVERS_DMC50V3_TRANSFER_TRANSFERDIRECTION_H
#define RUNTIME_DRIVERS_DMC50V3_TRANSFER_TRANSFERDIRECTION_H

/** Which way a transfer goes. The exporter's operations number the first two so. */
enum class TransferDirection {
    FromController = 0, // "reading": to a file
    ToController = 1,   // "writing": from a file
    Neither             // any other number: a file to load, a READ log, no error flag
};

/** The direction that an exporter's "mode" or "type" stands for. */
inline TransferDirection transferDirection(int number) {
    switch (number) {
    case int(TransferDirection::FromController):
        return TransferDirection::FromController;
    case int(TransferDirection::ToController):
        return TransferDirection::ToController;
    default:
        return TransferDirection::Neither;
    }
}

#endif
