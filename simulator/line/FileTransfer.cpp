#include "FileTransfer.h"

#include "TransferBytes.h"

using namespace transferbytes;

bool FileTransfer::blockComesAgain(int reply, Outcome ifAborted) {
    switch (reply) {
    case checksumError:
    case shortBlock:
        if (++m_refusals <= m_timings.retries)
            return true;
        end(Outcome::TooNoisy);
        break;
    case receiverAborts:
        end(ifAborted);
        break;
    case outOfSequence:
        end(Outcome::OutOfSequence);
        break;
    default:
        break;
    }
    return false;
}
