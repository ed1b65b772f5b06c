// Forward declarations of every class that public headers mention.
// No definitions, so that each header includes only what it needs whole.
#pragma once

namespace kelm {

class abstract_property;
class vector_property;
class subject;
class observer;
class semantic;
class object;
class model;
class framework;
class filter;
class sorter;
class message;
class message_history;
class tran_begin_message;
class tran_end_message;
class meta_object;
class meta_property;
class meta_composition;
class meta_attribute;
class meta_model;
class meta_model_builder;
class meta_types_filter;
class delta;
class compare;
class copier;
class qdxml;
class kelm_logger;
class transaction_object;
struct reference_record;

} // namespace kelm
