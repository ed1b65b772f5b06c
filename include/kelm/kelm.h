// Everything that the library offers, in one include.
// The parts can be had one by one.
#pragma once

#include <kelm/base64.h>
#include <kelm/copier.h>
#include <kelm/delta.h>
#include <kelm/export.h>
#include <kelm/filters.h>
#include <kelm/framework.h>
#include <kelm/fwd.h>
#include <kelm/guid.h>
#include <kelm/io_references.h>
#include <kelm/logger.h>
#include <kelm/message.h>
#include <kelm/message_history.h>
#include <kelm/meta_model.h>
#include <kelm/model.h>
#include <kelm/object.h>
#include <kelm/object_helpers.h>
#include <kelm/property.h>
#include <kelm/property_messages.h>
#include <kelm/qdxml.h>
#include <kelm/semantic.h>
#include <kelm/sorters.h>
#include <kelm/string_helpers.h>
#include <kelm/structure_messages.h>
#include <kelm/subject.h>
#include <kelm/transaction.h>
#include <kelm/types.h>
#include <kelm/xml_helpers.h>
