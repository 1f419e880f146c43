// Here so that the class has one home for its meta-object.
#include "PacketTransport.h"
