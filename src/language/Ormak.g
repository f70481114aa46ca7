// The Ormak language: lexer and parser, generated into C at build time.
// The lexer sees upper-cased lookahead, so every letter here is a capital and keywords
// match in any case, while token texts keep the case of the script.
grammar Ormak;

options {
    language = C;
    output = AST;
    ASTLabelType = pANTLR3_BASE_TREE;
}

tokens {
    SCRIPT; UNKNOWN; LIST; OPTION;
    ALTER_DIMENSION; CLOSE_ALL_FILE; CLOSE_FILE; CLOSE_GROUP; COPY_FILE; COPY_OBJECT;
    CREATE_ATTRIBUTE; CREATE_DATASET; CREATE_DIRECTORY; CREATE_EXTERNAL_LINK; CREATE_FILE;
    CREATE_GROUP; CREATE_LINK; DROP_DIRECTORY; DROP_FILE; DROP_OBJECT; FLUSH; INSERT;
    RENAME_DIRECTORY; RENAME_FILE; RENAME_OBJECT; SELECT; SET_ATOMIC; SET_CACHE; SET_DEBUG;
    SET_EXTERNAL_LINK_PREFIX; SET_FLUSH; SET_LIBRARY_BOUNDS; SHOW_ALL_USE_FILE; SHOW_ATOMIC;
    SHOW_CACHE; SHOW_CHARSET; SHOW_DATA_TYPE; SHOW_DEBUG; SHOW_DIMENSION; SHOW_DIRECTORY;
    SHOW_ENDIANNESS; SHOW_EXECUTE_STATUS; SHOW_EXTERNAL_LINK_PREFIX; SHOW_FILE; SHOW_FILE_SIZE;
    SHOW_FILE_VALIDITY; SHOW_FILL_TYPE; SHOW_FILL_VALUE; SHOW_FLUSH; SHOW_HDF5_VERSION;
    SHOW_ORMAK_VERSION; SHOW_LIBRARY_BOUNDS; SHOW_MASK; SHOW_MPI_VERSION; SHOW_OBJECT;
    SHOW_ORDER; SHOW_PCRE_VERSION; SHOW_SIZE; SHOW_STORAGE_ALLOCATION; SHOW_STORAGE_DIMENSION;
    SHOW_STORAGE_TYPE; SHOW_TAG; SHOW_TYPE; SHOW_USE_DIRECTORY; SHOW_USE_FILE;
    SHOW_USE_GROUP; SHOW_ZLIB_VERSION; USE_DIRECTORY; USE_FILE; USE_GROUP;
}

@lexer::includes {
#include "RecognitionErrors.h"
}

@parser::includes {
#include "RecognitionErrors.h"
}

// Syntax errors land in the session instead of being printed.
@lexer::apifuncs {
    RECOGNIZER->displayRecognitionError = _ormak_lexer_recognition_error;
}

@parser::apifuncs {
    RECOGNIZER->displayRecognitionError = _ormak_parser_recognition_error;
}

// A script: statements divided by ';' or line ends; empty statements do nothing.
script
    : statement? ((SEMICOLON_KEYWORD | NEW_LINE_KEYWORD) statement?)* EOF -> ^(SCRIPT statement*)
    ;

statement
    : data_definition_statement
    | data_manipulation_statement
    | data_query_statement
    | data_introspection_statement
    | miscellaneous_statement
    ;

data_definition_statement
    : create_statement
    | alter_statement
    | rename_statement
    | copy_statement
    | drop_statement
    ;

data_manipulation_statement
    : insert_statement
    ;

data_query_statement
    : select_statement
    ;

// Every SHOW statement ends in two slots: post-processing and output.
data_introspection_statement
    : SHOW_KEYWORD!
      ( show_use_directory_statement
      | show_use_file_statement
      | show_all_use_file_statement
      | show_use_group_statement
      | show_ormak_version_statement
      | show_hdf5_version_statement
      | show_pcre_version_statement
      | show_zlib_version_statement
      | show_mpi_version_statement
      | show_execute_status_statement
      | show_external_link_prefix_statement
      | show_flush_statement
      | show_debug_statement
      | show_directory_statement
      | show_file_statement
      | show_object_statement
      | show_file_validity_statement
      | show_library_bounds_statement
      | show_cache_statement
      | show_atomic_statement
      | show_type_statement
      | (kind_of_object? DATA_KEYWORD)=> show_data_type_statement
      | (kind_of_object? MAX_KEYWORD? DIMENSION_KEYWORD)=> show_dimension_statement
      | (STORAGE_KEYWORD TYPE_KEYWORD)=> show_storage_type_statement
      | (STORAGE_KEYWORD ALLOCATION_KEYWORD)=> show_storage_allocation_statement
      | show_storage_dimension_statement
      | (kind_of_object? ENDIANNESS_KEYWORD)=> show_endianness_statement
      | (kind_of_object? CHARSET_KEYWORD)=> show_charset_statement
      | (kind_of_object? TAG_KEYWORD)=> show_tag_statement
      | (FILL_KEYWORD TYPE_KEYWORD)=> show_fill_type_statement
      | show_fill_value_statement
      | ((ATTRIBUTE_KEYWORD | AT_KEYWORD)? ORDER_KEYWORD)=> show_order_statement
      | (FILE_KEYWORD SIZE_KEYWORD)=> show_file_size_statement
      | (kind_of_object? SIZE_KEYWORD)=> show_size_statement
      | show_mask_statement
      )
    ;

miscellaneous_statement
    : use_statement
    | flush_statement
    | close_statement
    | set_statement
    ;

create_statement
    : CREATE_KEYWORD!
      ( create_directory_statement
      | create_file_statement
      | create_group_statement
      | create_dataset_statement
      | create_attribute_statement
      | create_link_statement
      | create_external_link_statement
      )
    ;

alter_statement
    : ALTER_KEYWORD! alter_dimension_statement
    ;

rename_statement
    : RENAME_KEYWORD! (rename_directory_statement | rename_file_statement | rename_object_statement)
    ;

copy_statement
    : COPY_KEYWORD! (copy_file_statement | copy_object_statement)
    ;

drop_statement
    : DROP_KEYWORD! (drop_directory_statement | drop_file_statement | drop_object_statement)
    ;

use_statement
    : USE_KEYWORD! (use_directory_statement | use_file_statement | use_group_statement)
    ;

close_statement
    : CLOSE_KEYWORD! (close_file_statement | close_all_file_statement | close_group_statement)
    ;

set_statement
    : SET_KEYWORD!
      ( set_library_bounds_statement
      | set_cache_statement
      | set_atomic_statement
      | set_external_link_prefix_statement
      | set_flush_statement
      | set_debug_statement
      )
    ;

create_directory_statement
    : DIRECTORY_KEYWORD value_list -> ^(CREATE_DIRECTORY ^(OPTION value_list))
    ;

create_file_statement
    : TRUNCATE_KEYWORD? PARALLEL_KEYWORD? FILE_KEYWORD value_list
      (LIBRARY_KEYWORD BOUNDS_KEYWORD
       (FROM_KEYWORD low=(EARLIEST_KEYWORD | LATEST_KEYWORD | VERSION_18_KEYWORD))?
       (TO_KEYWORD high=LATEST_KEYWORD)?)?
      -> ^(CREATE_FILE ^(OPTION TRUNCATE_KEYWORD?) ^(OPTION PARALLEL_KEYWORD?) ^(OPTION value_list)
           ^(OPTION LIBRARY_KEYWORD?) ^(OPTION $low?) ^(OPTION $high?))
    ;

create_group_statement
    : TRUNCATE_KEYWORD? GROUP_KEYWORD file_object_list
      (ORDER_KEYWORD order=(TRACKED_KEYWORD | INDEXED_KEYWORD))?
      (STORAGE_KEYWORD COMPACT_KEYWORD compact=INTEGER_NUMBER_KEYWORD DENSE_KEYWORD dense=INTEGER_NUMBER_KEYWORD)?
      (ATTRIBUTE_KEYWORD ORDER_KEYWORD attribute_order=(TRACKED_KEYWORD | INDEXED_KEYWORD))?
      (ATTRIBUTE_KEYWORD STORAGE_KEYWORD COMPACT_KEYWORD attribute_compact=INTEGER_NUMBER_KEYWORD
       DENSE_KEYWORD attribute_dense=INTEGER_NUMBER_KEYWORD)?
      -> ^(CREATE_GROUP ^(OPTION TRUNCATE_KEYWORD?) ^(OPTION file_object_list) ^(OPTION $order?)
           ^(OPTION $compact? $dense?) ^(OPTION $attribute_order?) ^(OPTION $attribute_compact? $attribute_dense?))
    ;

create_dataset_statement
    : TRUNCATE_KEYWORD? (allocation=(EARLY_KEYWORD | INCREMENTAL_KEYWORD | LATE_KEYWORD))?
      ( storage=(CONTIGUOUS_KEYWORD | COMPACT_KEYWORD)
      | storage=CHUNKED_KEYWORD (LEFT_PARENTHESIS_KEYWORD number_optional_list RIGHT_PARENTHESIS_KEYWORD)?
      )?
      DATASET_KEYWORD file_object_list AS_KEYWORD
      (endianness=(NATIVE_KEYWORD | LITTLE_ENDIAN_KEYWORD | BIG_ENDIAN_KEYWORD))?
      (charset=(ASCII_KEYWORD | UTF8_KEYWORD))?
      (data_type | compound) (LEFT_PARENTHESIS_KEYWORD dimension_list RIGHT_PARENTHESIS_KEYWORD)?
      (TAG_KEYWORD tag=STRING_KEYWORD)?
      (FILL_KEYWORD (VALUES_KEYWORD fill=multiple_value_list | fill_undefined=UNDEFINED_KEYWORD))?
      (ATTRIBUTE_KEYWORD ORDER_KEYWORD attribute_order=(TRACKED_KEYWORD | INDEXED_KEYWORD))?
      (ATTRIBUTE_KEYWORD STORAGE_KEYWORD COMPACT_KEYWORD attribute_compact=INTEGER_NUMBER_KEYWORD
       DENSE_KEYWORD attribute_dense=INTEGER_NUMBER_KEYWORD)?
      (NBIT_KEYWORD PRECISION_KEYWORD precision=INTEGER_NUMBER_KEYWORD OFFSET_KEYWORD offset=INTEGER_NUMBER_KEYWORD)?
      (SCALEOFFSET_KEYWORD scale=INTEGER_NUMBER_KEYWORD)?
      SHUFFLE_KEYWORD?
      (ZLIB_KEYWORD (LEVEL_KEYWORD level=INTEGER_NUMBER_KEYWORD)?)?
      FLETCHER32_KEYWORD?
      (VALUES_KEYWORD values=multiple_value_list)?
      input_redirecting_statement?
      -> ^(CREATE_DATASET ^(OPTION TRUNCATE_KEYWORD?) ^(OPTION $allocation?) ^(OPTION $storage? number_optional_list?)
           ^(OPTION file_object_list) ^(OPTION $endianness?) ^(OPTION $charset?) ^(OPTION data_type?)
           ^(OPTION compound?) ^(OPTION dimension_list?) ^(OPTION $tag?) ^(OPTION $fill? $fill_undefined?)
           ^(OPTION $attribute_order?) ^(OPTION $attribute_compact? $attribute_dense?)
           ^(OPTION $precision? $offset?) ^(OPTION $scale?) ^(OPTION SHUFFLE_KEYWORD?)
           ^(OPTION ZLIB_KEYWORD? $level?) ^(OPTION FLETCHER32_KEYWORD?) ^(OPTION $values?)
           ^(OPTION input_redirecting_statement?))
    ;

// The dimensions are plain numbers: an attribute has no maximum.
create_attribute_statement
    : TRUNCATE_KEYWORD? ATTRIBUTE_KEYWORD file_object_list AS_KEYWORD
      (endianness=(NATIVE_KEYWORD | LITTLE_ENDIAN_KEYWORD | BIG_ENDIAN_KEYWORD))?
      (charset=(ASCII_KEYWORD | UTF8_KEYWORD))?
      (data_type | compound) (LEFT_PARENTHESIS_KEYWORD number_list RIGHT_PARENTHESIS_KEYWORD)?
      (TAG_KEYWORD tag=STRING_KEYWORD)?
      (VALUES_KEYWORD values=multiple_value_list)?
      input_redirecting_statement?
      -> ^(CREATE_ATTRIBUTE ^(OPTION TRUNCATE_KEYWORD?) ^(OPTION file_object_list) ^(OPTION $endianness?)
           ^(OPTION $charset?) ^(OPTION data_type?) ^(OPTION compound?) ^(OPTION number_list?) ^(OPTION $tag?)
           ^(OPTION $values?) ^(OPTION input_redirecting_statement?))
    ;

create_link_statement
    : TRUNCATE_KEYWORD? (kind=(SOFT_KEYWORD | HARD_KEYWORD))? LINK_KEYWORD file_object_list TO_KEYWORD value_list
      -> ^(CREATE_LINK ^(OPTION TRUNCATE_KEYWORD?) ^(OPTION $kind?) ^(OPTION file_object_list) ^(OPTION value_list))
    ;

create_external_link_statement
    : TRUNCATE_KEYWORD? EXTERNAL_KEYWORD LINK_KEYWORD file_object_list TO_KEYWORD link_value_list
      -> ^(CREATE_EXTERNAL_LINK ^(OPTION TRUNCATE_KEYWORD?) ^(OPTION file_object_list) ^(OPTION link_value_list))
    ;

// The new dimensions keep their commas and the signs of relative sizes.
alter_dimension_statement
    : DIMENSION_KEYWORD file_object_list TO_KEYWORD number_optional_list
      -> ^(ALTER_DIMENSION ^(OPTION file_object_list) ^(OPTION number_optional_list))
    ;

rename_directory_statement
    : DIRECTORY_KEYWORD old_names=value_list AS_KEYWORD new_names=value_list
      -> ^(RENAME_DIRECTORY ^(OPTION $old_names) ^(OPTION $new_names))
    ;

rename_file_statement
    : TRUNCATE_KEYWORD? FILE_KEYWORD old_names=value_list AS_KEYWORD new_names=value_list
      -> ^(RENAME_FILE ^(OPTION TRUNCATE_KEYWORD?) ^(OPTION $old_names) ^(OPTION $new_names))
    ;

copy_file_statement
    : TRUNCATE_KEYWORD? FILE_KEYWORD old_names=value_list TO_KEYWORD new_names=value_list
      -> ^(COPY_FILE ^(OPTION TRUNCATE_KEYWORD?) ^(OPTION $old_names) ^(OPTION $new_names))
    ;

// New names of objects are names in the same file; copies may go to another file.
rename_object_statement
    : TRUNCATE_KEYWORD? object_type? old_names=file_object_list AS_KEYWORD new_names=value_list
      -> ^(RENAME_OBJECT ^(OPTION TRUNCATE_KEYWORD?) ^(OPTION object_type?) ^(OPTION $old_names) ^(OPTION $new_names))
    ;

copy_object_statement
    : TRUNCATE_KEYWORD? object_type? old_names=file_object_list TO_KEYWORD new_names=file_object_list
      -> ^(COPY_OBJECT ^(OPTION TRUNCATE_KEYWORD?) ^(OPTION object_type?) ^(OPTION $old_names) ^(OPTION $new_names))
    ;

// The kind of object a statement insists on: one keyword in the tree, LINK for a soft link,
// EXTERNAL for an external link.
object_type
    : GROUP_KEYWORD
    | DATASET_KEYWORD
    | ATTRIBUTE_KEYWORD
    | AT_KEYWORD
    | SOFT_KEYWORD! LINK_KEYWORD
    | LINK_KEYWORD
    | EXTERNAL_KEYWORD LINK_KEYWORD!
    ;

drop_directory_statement
    : DIRECTORY_KEYWORD value_list -> ^(DROP_DIRECTORY ^(OPTION value_list))
    ;

drop_file_statement
    : FILE_KEYWORD value_list -> ^(DROP_FILE ^(OPTION value_list))
    ;

// Objects by name, everything of a kind in the current group (nothing behind the kind), or
// the paths that match an expression under an optional [file] object.
drop_object_statement
    : object_type?
      ( (STRING_KEYWORD* LIKE_KEYWORD)=>
          (file=STRING_KEYWORD object=STRING_KEYWORD | object=STRING_KEYWORD)?
          LIKE_KEYWORD expression=STRING_KEYWORD (DEEP_KEYWORD number_optional_list)?
      | file_object_list
      )?
      -> ^(DROP_OBJECT ^(OPTION object_type?) ^(OPTION file_object_list?) ^(OPTION $file?) ^(OPTION $object?)
           ^(OPTION $expression? number_optional_list?))
    ;

// Objects with their selections, divided by commas; a comma before "(" belongs to the points.
insert_statement
    : INSERT_KEYWORD
      (DIRECTLY_KEYWORD (MASK_KEYWORD mask=(INTEGER_NUMBER_KEYWORD | HEXADECIMAL_NUMBER_KEYWORD))?
       (SIZE_KEYWORD size=(INTEGER_NUMBER_KEYWORD | HEXADECIMAL_NUMBER_KEYWORD))?)?
      PARALLEL_KEYWORD? INTO_KEYWORD (kind=(DATASET_KEYWORD | ATTRIBUTE_KEYWORD | AT_KEYWORD))?
      objects+=object_selection (COMMA_KEYWORD objects+=object_selection)*
      (VALUES_KEYWORD values=multiple_value_list)?
      input_redirecting_statement?
      -> ^(INSERT ^(OPTION DIRECTLY_KEYWORD?) ^(OPTION $mask?) ^(OPTION $size?) ^(OPTION PARALLEL_KEYWORD?)
           ^(OPTION $kind?) ^(OPTION ^(LIST $objects+)) ^(OPTION $values?) ^(OPTION input_redirecting_statement?))
    ;

select_statement
    : SELECT_KEYWORD DIRECTLY_KEYWORD? PARALLEL_KEYWORD? FROM_KEYWORD
      (kind=(DATASET_KEYWORD | ATTRIBUTE_KEYWORD | AT_KEYWORD))? object_selection
      (CACHE_KEYWORD
       (SLOTS_KEYWORD slots=(FILE_KEYWORD | DEFAULT_KEYWORD | INTEGER_NUMBER_KEYWORD))?
       (SIZE_KEYWORD size=(FILE_KEYWORD | DEFAULT_KEYWORD | INTEGER_NUMBER_KEYWORD | HEXADECIMAL_NUMBER_KEYWORD))?
       (PREEMPTION_KEYWORD preemption=(FILE_KEYWORD | DEFAULT_KEYWORD | FLOAT_NUMBER_KEYWORD | INTEGER_NUMBER_KEYWORD))?)?
      post_processing_statement?
      output_redirecting_statement?
      -> ^(SELECT ^(OPTION DIRECTLY_KEYWORD?) ^(OPTION PARALLEL_KEYWORD?) ^(OPTION $kind?) ^(OPTION object_selection)
           ^(OPTION CACHE_KEYWORD?) ^(OPTION $slots?) ^(OPTION $size?) ^(OPTION $preemption?)
           ^(OPTION post_processing_statement?) ^(OPTION output_redirecting_statement?))
    ;

use_directory_statement
    : DIRECTORY_KEYWORD STRING_KEYWORD -> ^(USE_DIRECTORY STRING_KEYWORD)
    ;

use_file_statement
    : READONLY_KEYWORD? (PARALLEL_KEYWORD ATOMIC_KEYWORD?)? FILE_KEYWORD value_list
      (LIBRARY_KEYWORD BOUNDS_KEYWORD
       (FROM_KEYWORD low=(EARLIEST_KEYWORD | LATEST_KEYWORD | VERSION_18_KEYWORD))?
       (TO_KEYWORD high=LATEST_KEYWORD)?)?
      (CACHE_KEYWORD
       (SLOTS_KEYWORD slots=(DEFAULT_KEYWORD | INTEGER_NUMBER_KEYWORD))?
       (SIZE_KEYWORD size=(DEFAULT_KEYWORD | INTEGER_NUMBER_KEYWORD | HEXADECIMAL_NUMBER_KEYWORD))?
       (PREEMPTION_KEYWORD preemption=(DEFAULT_KEYWORD | FLOAT_NUMBER_KEYWORD | INTEGER_NUMBER_KEYWORD))?)?
      -> ^(USE_FILE ^(OPTION READONLY_KEYWORD?) ^(OPTION PARALLEL_KEYWORD? ATOMIC_KEYWORD?) ^(OPTION value_list)
           ^(OPTION LIBRARY_KEYWORD?) ^(OPTION $low?) ^(OPTION $high?)
           ^(OPTION CACHE_KEYWORD?) ^(OPTION $slots?) ^(OPTION $size?) ^(OPTION $preemption?))
    ;

use_group_statement
    : GROUP_KEYWORD STRING_KEYWORD -> ^(USE_GROUP STRING_KEYWORD)
    ;

flush_statement
    : FLUSH_KEYWORD (kind=(GLOBAL_KEYWORD | LOCAL_KEYWORD))? -> ^(FLUSH $kind?)
    ;

close_file_statement
    : FILE_KEYWORD value_list? -> ^(CLOSE_FILE value_list?)
    ;

close_all_file_statement
    : ALL_KEYWORD FILE_KEYWORD -> CLOSE_ALL_FILE
    ;

close_group_statement
    : GROUP_KEYWORD -> CLOSE_GROUP
    ;

set_library_bounds_statement
    : LIBRARY_KEYWORD BOUNDS_KEYWORD
      (FROM_KEYWORD low=(EARLIEST_KEYWORD | LATEST_KEYWORD | VERSION_18_KEYWORD))?
      (TO_KEYWORD high=LATEST_KEYWORD)?
      -> ^(SET_LIBRARY_BOUNDS ^(OPTION $low?) ^(OPTION $high?))
    ;

set_cache_statement
    : (object=(FILE_KEYWORD | DATASET_KEYWORD))? CACHE_KEYWORD
      (SLOTS_KEYWORD slots=(FILE_KEYWORD | DEFAULT_KEYWORD | INTEGER_NUMBER_KEYWORD))?
      (SIZE_KEYWORD size=(FILE_KEYWORD | DEFAULT_KEYWORD | INTEGER_NUMBER_KEYWORD | HEXADECIMAL_NUMBER_KEYWORD))?
      (PREEMPTION_KEYWORD preemption=(FILE_KEYWORD | DEFAULT_KEYWORD | FLOAT_NUMBER_KEYWORD | INTEGER_NUMBER_KEYWORD))?
      -> ^(SET_CACHE ^(OPTION $object?) ^(OPTION $slots?) ^(OPTION $size?) ^(OPTION $preemption?))
    ;

set_atomic_statement
    : (USE_KEYWORD FILE_KEYWORD)? ATOMIC_KEYWORD choice=(ENABLE_KEYWORD | DISABLE_KEYWORD)
      -> ^(SET_ATOMIC ^(OPTION USE_KEYWORD?) ^(OPTION $choice))
    ;

set_external_link_prefix_statement
    : EXTERNAL_KEYWORD LINK_KEYWORD PREFIX_KEYWORD STRING_KEYWORD?
      -> ^(SET_EXTERNAL_LINK_PREFIX ^(OPTION STRING_KEYWORD?))
    ;

set_flush_statement
    : FLUSH_KEYWORD (kind=(GLOBAL_KEYWORD | LOCAL_KEYWORD))? choice=(ENABLE_KEYWORD | DISABLE_KEYWORD)
      -> ^(SET_FLUSH ^(OPTION $kind?) ^(OPTION $choice))
    ;

set_debug_statement
    : DEBUG_KEYWORD choice=(ENABLE_KEYWORD | DISABLE_KEYWORD) -> ^(SET_DEBUG $choice)
    ;

show_use_directory_statement
    : USE_KEYWORD DIRECTORY_KEYWORD post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_USE_DIRECTORY ^(OPTION post_processing_statement?) ^(OPTION output_redirecting_statement?))
    ;

show_use_file_statement
    : USE_KEYWORD FILE_KEYWORD post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_USE_FILE ^(OPTION post_processing_statement?) ^(OPTION output_redirecting_statement?))
    ;

show_all_use_file_statement
    : ALL_KEYWORD USE_KEYWORD FILE_KEYWORD post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_ALL_USE_FILE ^(OPTION post_processing_statement?) ^(OPTION output_redirecting_statement?))
    ;

show_use_group_statement
    : USE_KEYWORD GROUP_KEYWORD post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_USE_GROUP ^(OPTION post_processing_statement?) ^(OPTION output_redirecting_statement?))
    ;

show_ormak_version_statement
    : ORMAK_KEYWORD VERSION_KEYWORD post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_ORMAK_VERSION ^(OPTION post_processing_statement?) ^(OPTION output_redirecting_statement?))
    ;

show_hdf5_version_statement
    : HDF5_KEYWORD VERSION_KEYWORD post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_HDF5_VERSION ^(OPTION post_processing_statement?) ^(OPTION output_redirecting_statement?))
    ;

show_pcre_version_statement
    : PCRE_KEYWORD VERSION_KEYWORD post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_PCRE_VERSION ^(OPTION post_processing_statement?) ^(OPTION output_redirecting_statement?))
    ;

show_zlib_version_statement
    : ZLIB_KEYWORD VERSION_KEYWORD post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_ZLIB_VERSION ^(OPTION post_processing_statement?) ^(OPTION output_redirecting_statement?))
    ;

show_mpi_version_statement
    : MPI_KEYWORD VERSION_KEYWORD post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_MPI_VERSION ^(OPTION post_processing_statement?) ^(OPTION output_redirecting_statement?))
    ;

show_execute_status_statement
    : EXECUTE_KEYWORD STATUS_KEYWORD post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_EXECUTE_STATUS ^(OPTION post_processing_statement?) ^(OPTION output_redirecting_statement?))
    ;

show_external_link_prefix_statement
    : EXTERNAL_KEYWORD LINK_KEYWORD PREFIX_KEYWORD post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_EXTERNAL_LINK_PREFIX ^(OPTION post_processing_statement?) ^(OPTION output_redirecting_statement?))
    ;

show_flush_statement
    : FLUSH_KEYWORD post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_FLUSH ^(OPTION post_processing_statement?) ^(OPTION output_redirecting_statement?))
    ;

show_debug_statement
    : DEBUG_KEYWORD post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_DEBUG ^(OPTION post_processing_statement?) ^(OPTION output_redirecting_statement?))
    ;

show_file_validity_statement
    : FILE_KEYWORD VALIDITY_KEYWORD value_list post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_FILE_VALIDITY ^(OPTION value_list) ^(OPTION post_processing_statement?)
           ^(OPTION output_redirecting_statement?))
    ;

// The file in use is told by its USE word. FROM followed by a number or a comma begins the
// range of post-processing, not the low bound.
show_library_bounds_statement
    : (USE_KEYWORD FILE_KEYWORD)? LIBRARY_KEYWORD BOUNDS_KEYWORD
      (bound=(FROM_KEYWORD | TO_KEYWORD))?
      post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_LIBRARY_BOUNDS ^(OPTION USE_KEYWORD?) ^(OPTION $bound?) ^(OPTION post_processing_statement?)
           ^(OPTION output_redirecting_statement?))
    ;

show_cache_statement
    : (USE_KEYWORD FILE_KEYWORD)? (object=(FILE_KEYWORD | DATASET_KEYWORD))? CACHE_KEYWORD
      (parameter=(SLOTS_KEYWORD | SIZE_KEYWORD | PREEMPTION_KEYWORD))?
      post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_CACHE ^(OPTION USE_KEYWORD?) ^(OPTION $object?) ^(OPTION $parameter?)
           ^(OPTION post_processing_statement?) ^(OPTION output_redirecting_statement?))
    ;

show_atomic_statement
    : (USE_KEYWORD FILE_KEYWORD)? ATOMIC_KEYWORD post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_ATOMIC ^(OPTION USE_KEYWORD?) ^(OPTION post_processing_statement?)
           ^(OPTION output_redirecting_statement?))
    ;

// Properties of objects. A list statement's slot 0 holds its list; one with a kind of object
// has that kind in slot 0 and the list in slot 1.
kind_of_object
    : DATASET_KEYWORD | ATTRIBUTE_KEYWORD | AT_KEYWORD
    ;

show_type_statement
    : TYPE_KEYWORD file_object_list post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_TYPE ^(OPTION file_object_list) ^(OPTION post_processing_statement?)
           ^(OPTION output_redirecting_statement?))
    ;

show_data_type_statement
    : kind_of_object? DATA_KEYWORD TYPE_KEYWORD file_object_list
      post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_DATA_TYPE ^(OPTION kind_of_object?) ^(OPTION file_object_list) ^(OPTION post_processing_statement?)
           ^(OPTION output_redirecting_statement?))
    ;

show_endianness_statement
    : kind_of_object? ENDIANNESS_KEYWORD file_object_list post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_ENDIANNESS ^(OPTION kind_of_object?) ^(OPTION file_object_list) ^(OPTION post_processing_statement?)
           ^(OPTION output_redirecting_statement?))
    ;

show_charset_statement
    : kind_of_object? CHARSET_KEYWORD file_object_list post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_CHARSET ^(OPTION kind_of_object?) ^(OPTION file_object_list) ^(OPTION post_processing_statement?)
           ^(OPTION output_redirecting_statement?))
    ;

show_tag_statement
    : kind_of_object? TAG_KEYWORD file_object_list post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_TAG ^(OPTION kind_of_object?) ^(OPTION file_object_list) ^(OPTION post_processing_statement?)
           ^(OPTION output_redirecting_statement?))
    ;

show_size_statement
    : kind_of_object? SIZE_KEYWORD file_object_list post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_SIZE ^(OPTION kind_of_object?) ^(OPTION file_object_list) ^(OPTION post_processing_statement?)
           ^(OPTION output_redirecting_statement?))
    ;

show_order_statement
    : (kind=(ATTRIBUTE_KEYWORD | AT_KEYWORD))? ORDER_KEYWORD file_object_list
      post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_ORDER ^(OPTION $kind?) ^(OPTION file_object_list) ^(OPTION post_processing_statement?)
           ^(OPTION output_redirecting_statement?))
    ;

show_dimension_statement
    : kind_of_object? MAX_KEYWORD? DIMENSION_KEYWORD (file=STRING_KEYWORD)? name=STRING_KEYWORD
      post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_DIMENSION ^(OPTION kind_of_object?) ^(OPTION MAX_KEYWORD?) ^(OPTION $file?) $name
           ^(OPTION post_processing_statement?) ^(OPTION output_redirecting_statement?))
    ;

show_storage_type_statement
    : STORAGE_KEYWORD TYPE_KEYWORD file_object_list post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_STORAGE_TYPE ^(OPTION file_object_list) ^(OPTION post_processing_statement?)
           ^(OPTION output_redirecting_statement?))
    ;

show_storage_allocation_statement
    : STORAGE_KEYWORD ALLOCATION_KEYWORD file_object_list post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_STORAGE_ALLOCATION ^(OPTION file_object_list) ^(OPTION post_processing_statement?)
           ^(OPTION output_redirecting_statement?))
    ;

show_storage_dimension_statement
    : STORAGE_KEYWORD DIMENSION_KEYWORD (file=STRING_KEYWORD)? name=STRING_KEYWORD
      post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_STORAGE_DIMENSION ^(OPTION $file?) $name ^(OPTION post_processing_statement?)
           ^(OPTION output_redirecting_statement?))
    ;

show_fill_type_statement
    : FILL_KEYWORD TYPE_KEYWORD file_object_list post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_FILL_TYPE ^(OPTION file_object_list) ^(OPTION post_processing_statement?)
           ^(OPTION output_redirecting_statement?))
    ;

show_fill_value_statement
    : FILL_KEYWORD VALUE_KEYWORD (file=STRING_KEYWORD)? name=STRING_KEYWORD
      post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_FILL_VALUE ^(OPTION $file?) $name ^(OPTION post_processing_statement?)
           ^(OPTION output_redirecting_statement?))
    ;

// Without names, the file in use.
show_file_size_statement
    : FILE_KEYWORD SIZE_KEYWORD value_list? post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_FILE_SIZE ^(OPTION value_list?) ^(OPTION post_processing_statement?)
           ^(OPTION output_redirecting_statement?))
    ;

show_mask_statement
    : MASK_KEYWORD file_object_selection_list post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_MASK ^(OPTION file_object_selection_list) ^(OPTION post_processing_statement?)
           ^(OPTION output_redirecting_statement?))
    ;

// Listings of objects: [kind] [[file] object] [LIKE expression [DEEP depths]] [WHERE conditions]
// [ORDER CREATION]. One name is the object; two are the file and the object.
show_object_statement
    : object_type? (file=STRING_KEYWORD object=STRING_KEYWORD | object=STRING_KEYWORD)?
      (LIKE_KEYWORD expression=STRING_KEYWORD (DEEP_KEYWORD number_optional_list)?)?
      (WHERE_KEYWORD where_condition_list)?
      (ORDER_KEYWORD CREATION_KEYWORD)?
      post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_OBJECT ^(OPTION object_type?) ^(OPTION $file?) ^(OPTION $object?)
           ^(OPTION $expression? number_optional_list?) ^(OPTION where_condition_list?) ^(OPTION CREATION_KEYWORD?)
           ^(OPTION post_processing_statement?) ^(OPTION output_redirecting_statement?))
    ;

// Listings of the file system: the directories or the files of a directory, or one path.
show_directory_statement
    : DIRECTORY_KEYWORD (path=STRING_KEYWORD)?
      (LIKE_KEYWORD expression=STRING_KEYWORD (DEEP_KEYWORD number_optional_list)?)?
      post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_DIRECTORY ^(OPTION $path?) ^(OPTION $expression? number_optional_list?)
           ^(OPTION post_processing_statement?) ^(OPTION output_redirecting_statement?))
    ;

show_file_statement
    : FILE_KEYWORD (path=STRING_KEYWORD)?
      (LIKE_KEYWORD expression=STRING_KEYWORD (DEEP_KEYWORD number_optional_list)?)?
      post_processing_statement? output_redirecting_statement?
      -> ^(SHOW_FILE ^(OPTION $path?) ^(OPTION $expression? number_optional_list?)
           ^(OPTION post_processing_statement?) ^(OPTION output_redirecting_statement?))
    ;

// Shared rules.

// ORDER, TOP, BOTTOM, FROM ... TO and STEP clauses, kept flat; a pair is "n", "n n" or ", n".
post_processing_statement
    : ( x+=ORDER_KEYWORD
        ( x+=(ASCEND_KEYWORD | DESCEND_KEYWORD | REVERSE_KEYWORD) x+=(ASCEND_KEYWORD | DESCEND_KEYWORD | REVERSE_KEYWORD)?
        | x+=COMMA_KEYWORD x+=(ASCEND_KEYWORD | DESCEND_KEYWORD | REVERSE_KEYWORD)
        )
      | x+=(TOP_KEYWORD | BOTTOM_KEYWORD | STEP_KEYWORD)
        (x+=INTEGER_NUMBER_KEYWORD x+=INTEGER_NUMBER_KEYWORD? | x+=COMMA_KEYWORD x+=INTEGER_NUMBER_KEYWORD)
      | x+=FROM_KEYWORD
        (x+=INTEGER_NUMBER_KEYWORD x+=INTEGER_NUMBER_KEYWORD? | x+=COMMA_KEYWORD x+=INTEGER_NUMBER_KEYWORD)
        x+=TO_KEYWORD
        (x+=INTEGER_NUMBER_KEYWORD x+=INTEGER_NUMBER_KEYWORD? | x+=COMMA_KEYWORD x+=INTEGER_NUMBER_KEYWORD)
      )+
      -> ^(LIST $x+)
    ;

// Seven slots: cursor, text file, end of line, separator, subseparator, binary file, memory.
input_redirecting_statement
    : FROM_KEYWORD
      ( CURSOR_KEYWORD
        -> ^(LIST ^(OPTION CURSOR_KEYWORD) OPTION OPTION OPTION OPTION OPTION OPTION)
      | TEXT_KEYWORD FILE_KEYWORD text=STRING_KEYWORD line=(DOS_KEYWORD | UNIX_KEYWORD)?
        (SEPARATOR_KEYWORD separator=STRING_KEYWORD (SEPARATOR_KEYWORD subseparator=STRING_KEYWORD)?)?
        -> ^(LIST OPTION ^(OPTION $text) ^(OPTION $line?) ^(OPTION $separator?) ^(OPTION $subseparator?)
             OPTION OPTION)
      | BINARY_KEYWORD FILE_KEYWORD binary=STRING_KEYWORD
        -> ^(LIST OPTION OPTION OPTION OPTION OPTION ^(OPTION $binary) OPTION)
      | MEMORY_KEYWORD number=INTEGER_NUMBER_KEYWORD
        (SIZE_KEYWORD size=(INTEGER_NUMBER_KEYWORD | HEXADECIMAL_NUMBER_KEYWORD))?
        -> ^(LIST OPTION OPTION OPTION OPTION OPTION OPTION ^(OPTION $number $size?))
      )
    ;

// Nine slots: cursor, truncate, text file, end of line, separator, subseparator, split,
// binary file, memory.
output_redirecting_statement
    : INTO_KEYWORD
      ( CURSOR_KEYWORD
        -> ^(LIST ^(OPTION CURSOR_KEYWORD) OPTION OPTION OPTION OPTION OPTION OPTION OPTION OPTION)
      | TRUNCATE_KEYWORD? TEXT_KEYWORD FILE_KEYWORD text=STRING_KEYWORD line=(DOS_KEYWORD | UNIX_KEYWORD)?
        (SEPARATOR_KEYWORD separator=STRING_KEYWORD (SEPARATOR_KEYWORD subseparator=STRING_KEYWORD)?)?
        (SPLIT_KEYWORD split=INTEGER_NUMBER_KEYWORD)?
        -> ^(LIST OPTION ^(OPTION TRUNCATE_KEYWORD?) ^(OPTION $text) ^(OPTION $line?) ^(OPTION $separator?)
             ^(OPTION $subseparator?) ^(OPTION $split?) OPTION OPTION)
      | TRUNCATE_KEYWORD? BINARY_KEYWORD FILE_KEYWORD binary=STRING_KEYWORD
        -> ^(LIST OPTION ^(OPTION TRUNCATE_KEYWORD?) OPTION OPTION OPTION OPTION OPTION ^(OPTION $binary) OPTION)
      | MEMORY_KEYWORD number=INTEGER_NUMBER_KEYWORD
        (SIZE_KEYWORD size=(INTEGER_NUMBER_KEYWORD | HEXADECIMAL_NUMBER_KEYWORD))?
        -> ^(LIST OPTION OPTION OPTION OPTION OPTION OPTION OPTION OPTION ^(OPTION $number $size?))
      )
    ;

// Objects, each possibly of another file: "[file] name {, [file] name}".
file_object_list
    : file_object_list_inner (COMMA_KEYWORD file_object_list_inner)* -> ^(LIST file_object_list_inner+)
    ;

file_object_list_inner
    : (file=STRING_KEYWORD)? name=STRING_KEYWORD -> ^(LIST ^(OPTION $file?) $name)
    ;

file_object_selection_list
    : file_object_selection_list_inner (COMMA_KEYWORD file_object_selection_list_inner)*
      -> ^(LIST file_object_selection_list_inner+)
    ;

file_object_selection_list_inner
    : (file=STRING_KEYWORD)? name=STRING_KEYWORD
      (LEFT_PARENTHESIS_KEYWORD number_list RIGHT_PARENTHESIS_KEYWORD)?
      -> ^(LIST ^(OPTION $file?) $name ^(OPTION number_list?))
    ;

number_list
    : INTEGER_NUMBER_KEYWORD (COMMA_KEYWORD INTEGER_NUMBER_KEYWORD)* -> ^(LIST INTEGER_NUMBER_KEYWORD+)
    ;

// Keeps its commas: a comma where a number could stand is a position without a number.
number_optional_list
    : (x+=INTEGER_NUMBER_KEYWORD)? (x+=COMMA_KEYWORD (x+=INTEGER_NUMBER_KEYWORD)?)* -> ^(LIST $x*)
    ;

value_list
    : STRING_KEYWORD (COMMA_KEYWORD STRING_KEYWORD)* -> ^(LIST STRING_KEYWORD+)
    ;

// The members of a compound, flat: name, AS, type (a nested compound is a LIST of the same
// form), an optional parenthesised number, and a comma before the next member.
compound
    : COMPOUND_KEYWORD LEFT_PARENTHESIS_KEYWORD compound_inner RIGHT_PARENTHESIS_KEYWORD -> ^(LIST compound_inner)
    ;

compound_inner
    : STRING_KEYWORD AS_KEYWORD (data_type | compound)
      (LEFT_PARENTHESIS_KEYWORD INTEGER_NUMBER_KEYWORD RIGHT_PARENTHESIS_KEYWORD)?
      (COMMA_KEYWORD STRING_KEYWORD AS_KEYWORD (data_type | compound)
       (LEFT_PARENTHESIS_KEYWORD INTEGER_NUMBER_KEYWORD RIGHT_PARENTHESIS_KEYWORD)?)*
    ;

// Each dimension is n, n TO n, n TO UNLIMITED or UNLIMITED; commas are dropped.
dimension_list
    : ( x+=INTEGER_NUMBER_KEYWORD (x+=TO_KEYWORD x+=(INTEGER_NUMBER_KEYWORD | UNLIMITED_KEYWORD))?
      | x+=UNLIMITED_KEYWORD
      )
      ( COMMA_KEYWORD
        ( x+=INTEGER_NUMBER_KEYWORD (x+=TO_KEYWORD x+=(INTEGER_NUMBER_KEYWORD | UNLIMITED_KEYWORD))?
        | x+=UNLIMITED_KEYWORD
        )
      )*
      -> ^(LIST $x+)
    ;

// Link targets as pairs of file and object name, flat.
link_value_list
    : STRING_KEYWORD STRING_KEYWORD (COMMA_KEYWORD STRING_KEYWORD STRING_KEYWORD)* -> ^(LIST STRING_KEYWORD+)
    ;

// One object with its selection: hyperslabs joined by operators, or points.
object_selection
    : (file=STRING_KEYWORD)? name=STRING_KEYWORD
      ( (LEFT_PARENTHESIS_KEYWORD (INTEGER_NUMBER_KEYWORD | COMMA_KEYWORD)* COLON_KEYWORD)=>
        hyperslabs+=hyperslab_selection
        (operators+=(OR_KEYWORD | AND_KEYWORD | XOR_KEYWORD | NOTA_KEYWORD | NOTB_KEYWORD)
         hyperslabs+=hyperslab_selection)*
      | points+=point_selection ((COMMA_KEYWORD LEFT_PARENTHESIS_KEYWORD)=> COMMA_KEYWORD points+=point_selection)*
      )?
      -> ^(LIST ^(OPTION $file?) $name ^(OPTION $hyperslabs*) ^(OPTION $operators*) ^(OPTION $points*))
    ;

// start:stride:count:block for each dimension, kept flat with its colons and commas.
hyperslab_selection
    : LEFT_PARENTHESIS_KEYWORD
      (x+=INTEGER_NUMBER_KEYWORD)?
      (x+=COLON_KEYWORD (x+=INTEGER_NUMBER_KEYWORD)? (x+=COLON_KEYWORD (x+=INTEGER_NUMBER_KEYWORD)?
       (x+=COLON_KEYWORD (x+=INTEGER_NUMBER_KEYWORD)?)?)?)?
      ( x+=COMMA_KEYWORD
        (x+=INTEGER_NUMBER_KEYWORD)?
        (x+=COLON_KEYWORD (x+=INTEGER_NUMBER_KEYWORD)? (x+=COLON_KEYWORD (x+=INTEGER_NUMBER_KEYWORD)?
         (x+=COLON_KEYWORD (x+=INTEGER_NUMBER_KEYWORD)?)?)?)?
      )*
      RIGHT_PARENTHESIS_KEYWORD
      -> ^(LIST $x*)
    ;

point_selection
    : LEFT_PARENTHESIS_KEYWORD number_list RIGHT_PARENTHESIS_KEYWORD -> number_list
    ;

// The values of one dimension level; keeps its commas, a lone comma is an omitted value.
multiple_value_list
    : LEFT_PARENTHESIS_KEYWORD multiple_value_sequence RIGHT_PARENTHESIS_KEYWORD -> ^(LIST multiple_value_sequence)
    ;

// Values and commas in the order written, flat under the list above.
multiple_value_sequence
    : multiple_value? (COMMA_KEYWORD multiple_value?)*
    ;

multiple_value
    : value
    | multiple_value_list
    ;

data_type
    : TINYINT_KEYWORD | UNSIGNED_TINYINT_KEYWORD | SMALLINT_KEYWORD | UNSIGNED_SMALLINT_KEYWORD
    | INT_KEYWORD | UNSIGNED_INT_KEYWORD | BIGINT_KEYWORD | UNSIGNED_BIGINT_KEYWORD
    | FLOAT_KEYWORD | DOUBLE_KEYWORD | CHAR_KEYWORD
    | VARTINYINT_KEYWORD | UNSIGNED_VARTINYINT_KEYWORD | VARSMALLINT_KEYWORD | UNSIGNED_VARSMALLINT_KEYWORD
    | VARINT_KEYWORD | UNSIGNED_VARINT_KEYWORD | VARBIGINT_KEYWORD | UNSIGNED_VARBIGINT_KEYWORD
    | VARFLOAT_KEYWORD | VARDOUBLE_KEYWORD | VARCHAR_KEYWORD | OPAQUE_KEYWORD
    ;

// Conditions on the kind or the data type of objects, joined by AND and OR, kept flat.
where_condition_list
    : where_condition ((AND_KEYWORD | OR_KEYWORD) where_condition)*
    ;

where_condition
    : where_type
    | where_data_type
    ;

where_type
    : TYPE_KEYWORD^ (EQUAL_KEYWORD | NOT_EQUAL_KEYWORD) object_type
    ;

where_data_type
    : DATA_KEYWORD^ TYPE_KEYWORD! (EQUAL_KEYWORD | NOT_EQUAL_KEYWORD) where_data_type_value
    ;

where_data_type_value
    : data_type
    | COMPOUND_KEYWORD
    ;

value
    : INTEGER_NUMBER_KEYWORD
    | FLOAT_NUMBER_KEYWORD
    | HEXADECIMAL_NUMBER_KEYWORD
    | STRING_KEYWORD
    ;

//
// The lexer. Rules stand in the order of the token table; for two rules that match the
// same text the earlier wins, so every keyword stands before STRING_KEYWORD.
//

CREATE_KEYWORD : 'CREATE' ;
ALTER_KEYWORD : 'ALTER' ;
RENAME_KEYWORD : 'RENAME' ;
COPY_KEYWORD : 'COPY' ;
DROP_KEYWORD : 'DROP' ;
INSERT_KEYWORD : 'INSERT' ;
SELECT_KEYWORD : 'SELECT' ;
SHOW_KEYWORD : 'SHOW' ;
USE_KEYWORD : 'USE' ;
FLUSH_KEYWORD : 'FLUSH' ;
CLOSE_KEYWORD : 'CLOSE' ;
SET_KEYWORD : 'SET' ;
DEBUG_KEYWORD : 'DEBUG' ;
ALL_KEYWORD : 'ALL' ;
FILE_KEYWORD : 'FILE' ;
GROUP_KEYWORD : 'GROUP' ;
DATASET_KEYWORD : 'DATASET' ;
ATTRIBUTE_KEYWORD : 'ATTRIBUTE' ;
AT_KEYWORD : 'AT' ;
LINK_KEYWORD : 'LINK' ;
TRUNCATE_KEYWORD : 'TRUNCATE' ;
DIRECTLY_KEYWORD : 'DIRECTLY' ;
MASK_KEYWORD : 'MASK' ;
ATOMIC_KEYWORD : 'ATOMIC' ;
PARALLEL_KEYWORD : 'PARALLEL' ;
CONTIGUOUS_KEYWORD : 'CONTIGUOUS' ;
COMPACT_KEYWORD : 'COMPACT' ;
CHUNKED_KEYWORD : 'CHUNKED' ;
SHUFFLE_KEYWORD : 'SHUFFLE' ;
SCALEOFFSET_KEYWORD : 'SCALEOFFSET' ;
NBIT_KEYWORD : 'NBIT' ;
PRECISION_KEYWORD : 'PRECISION' ;
OFFSET_KEYWORD : 'OFFSET' ;
ZLIB_KEYWORD : 'ZLIB' ;
LEVEL_KEYWORD : 'LEVEL' ;
FLETCHER32_KEYWORD : 'FLETCHER32' ;
TINYINT_KEYWORD : 'TINYINT' ;
UNSIGNED_TINYINT_KEYWORD : UNSIGNED_KEYWORD SPACE_KEYWORD+ 'TINYINT' ;
SMALLINT_KEYWORD : 'SMALLINT' ;
UNSIGNED_SMALLINT_KEYWORD : UNSIGNED_KEYWORD SPACE_KEYWORD+ 'SMALLINT' ;
INT_KEYWORD : 'INT' ;
UNSIGNED_INT_KEYWORD : UNSIGNED_KEYWORD SPACE_KEYWORD+ 'INT' ;
BIGINT_KEYWORD : 'BIGINT' ;
UNSIGNED_BIGINT_KEYWORD : UNSIGNED_KEYWORD SPACE_KEYWORD+ 'BIGINT' ;
FLOAT_KEYWORD : 'FLOAT' ;
DOUBLE_KEYWORD : 'DOUBLE' ;
CHAR_KEYWORD : 'CHAR' ;
VARTINYINT_KEYWORD : 'VARTINYINT' ;
UNSIGNED_VARTINYINT_KEYWORD : UNSIGNED_KEYWORD SPACE_KEYWORD+ 'VARTINYINT' ;
VARSMALLINT_KEYWORD : 'VARSMALLINT' ;
UNSIGNED_VARSMALLINT_KEYWORD : UNSIGNED_KEYWORD SPACE_KEYWORD+ 'VARSMALLINT' ;
VARINT_KEYWORD : 'VARINT' ;
UNSIGNED_VARINT_KEYWORD : UNSIGNED_KEYWORD SPACE_KEYWORD+ 'VARINT' ;
VARBIGINT_KEYWORD : 'VARBIGINT' ;
UNSIGNED_VARBIGINT_KEYWORD : UNSIGNED_KEYWORD SPACE_KEYWORD+ 'VARBIGINT' ;
VARFLOAT_KEYWORD : 'VARFLOAT' ;
VARDOUBLE_KEYWORD : 'VARDOUBLE' ;
VARCHAR_KEYWORD : 'VARCHAR' ;
OPAQUE_KEYWORD : 'OPAQUE' ;
COMPOUND_KEYWORD : 'COMPOUND' ;
NATIVE_KEYWORD : 'NATIVE' ;
LITTLE_ENDIAN_KEYWORD : 'LITTLE' SPACE_KEYWORD+ ENDIAN_KEYWORD ;
BIG_ENDIAN_KEYWORD : 'BIG' SPACE_KEYWORD+ ENDIAN_KEYWORD ;
ASCII_KEYWORD : 'ASCII' ;
UTF8_KEYWORD : 'UTF8' ;
LIBRARY_KEYWORD : 'LIBRARY' ;
BOUNDS_KEYWORD : 'BOUNDS' ;
EARLIEST_KEYWORD : 'EARLIEST' ;
LATEST_KEYWORD : 'LATEST' ;
VERSION_18_KEYWORD : 'V18' ;
CACHE_KEYWORD : 'CACHE' ;
SLOTS_KEYWORD : 'SLOTS' ;
PREEMPTION_KEYWORD : 'PREEMPTION' ;
TAG_KEYWORD : 'TAG' ;
FILL_KEYWORD : 'FILL' ;
UNDEFINED_KEYWORD : 'UNDEFINED' ;
DEFAULT_KEYWORD : 'DEFAULT' ;
SOFT_KEYWORD : 'SOFT' ;
HARD_KEYWORD : 'HARD' ;
EXTERNAL_KEYWORD : 'EXTERNAL' ;
AS_KEYWORD : 'AS' ;
TO_KEYWORD : 'TO' ;
UNLIMITED_KEYWORD : 'UNLIMITED' ;
FROM_KEYWORD : 'FROM' ;
CURSOR_KEYWORD : 'CURSOR' ;
DOS_KEYWORD : 'DOS' ;
UNIX_KEYWORD : 'UNIX' ;
VALUE_KEYWORD : 'VALUE' ;
VALUES_KEYWORD : 'VALUES' ;
INTO_KEYWORD : 'INTO' ;
TEXT_KEYWORD : 'TEXT' ;
SEPARATOR_KEYWORD : 'SEPARATOR' ;
SPLIT_KEYWORD : 'SPLIT' ;
BINARY_KEYWORD : 'BINARY' ;
MEMORY_KEYWORD : 'MEMORY' ;
VALIDITY_KEYWORD : 'VALIDITY' ;
LIKE_KEYWORD : 'LIKE' ;
DEEP_KEYWORD : 'DEEP' ;
WHERE_KEYWORD : 'WHERE' ;
TYPE_KEYWORD : 'TYPE' ;
EARLY_KEYWORD : 'EARLY' ;
INCREMENTAL_KEYWORD : 'INCREMENTAL' ;
LATE_KEYWORD : 'LATE' ;
STORAGE_KEYWORD : 'STORAGE' ;
ALLOCATION_KEYWORD : 'ALLOCATION' ;
DATA_KEYWORD : 'DATA' ;
ENDIANNESS_KEYWORD : 'ENDIANNESS' ;
CHARSET_KEYWORD : 'CHARSET' ;
DIMENSION_KEYWORD : 'DIMENSION' ;
MAX_KEYWORD : 'MAX' ;
SIZE_KEYWORD : 'SIZE' ;
VERSION_KEYWORD : 'VERSION' ;
ORMAK_KEYWORD : 'ORMAK' ;
HDF5_KEYWORD : 'HDF5' ;
PCRE_KEYWORD : 'PCRE' ;
DIRECTORY_KEYWORD : 'DIRECTORY' ;
EXECUTE_KEYWORD : 'EXECUTE' ;
STATUS_KEYWORD : 'STATUS' ;
READONLY_KEYWORD : 'READONLY' ;
GLOBAL_KEYWORD : 'GLOBAL' ;
LOCAL_KEYWORD : 'LOCAL' ;
ENABLE_KEYWORD : 'ENABLE' ;
DISABLE_KEYWORD : 'DISABLE' ;
DATE_KEYWORD : 'DATE' ;
MPI_KEYWORD : 'MPI' ;
PREFIX_KEYWORD : 'PREFIX' ;
TOP_KEYWORD : 'TOP' ;
BOTTOM_KEYWORD : 'BOTTOM' ;
STEP_KEYWORD : 'STEP' ;
ORDER_KEYWORD : 'ORDER' ;
TRACKED_KEYWORD : 'TRACKED' ;
INDEXED_KEYWORD : 'INDEXED' ;
DENSE_KEYWORD : 'DENSE' ;
ASCEND_KEYWORD : 'ASCEND' ;
DESCEND_KEYWORD : 'DESCEND' ;
CREATION_KEYWORD : 'CREATION' ;
REVERSE_KEYWORD : 'REVERSE' ;
LEFT_PARENTHESIS_KEYWORD : '(' ;
RIGHT_PARENTHESIS_KEYWORD : ')' ;
COMMA_KEYWORD : ',' ;
COLON_KEYWORD : ':' ;
OR_KEYWORD : 'OR' ;
AND_KEYWORD : 'AND' ;
XOR_KEYWORD : 'XOR' ;
NOTA_KEYWORD : 'NOTA' ;
NOTB_KEYWORD : 'NOTB' ;
EQUAL_KEYWORD : '=' ;
NOT_EQUAL_KEYWORD : '<>' ;
SINGLE_COMMENT_KEYWORD : '#' (~('\n' | '\r'))* { SKIP(); } ;
MULTIPLE_COMMENT_KEYWORD : '/*' (options { greedy = false; } : .)* '*/' { SKIP(); } ;
CONTINUED_LINE_KEYWORD : '\\' '\r'? '\n' { SKIP(); } ;
MULTIPLE_SPACE_KEYWORD : SPACE_KEYWORD+ { SKIP(); } ;
// An integer; a fraction or an exponent behind the digits makes it a float.
INTEGER_NUMBER_KEYWORD
    : ('+' | '-')? DIGIT_KEYWORD+
      ( '.' DIGIT_KEYWORD* (('E' ('+' | '-')? DIGIT_KEYWORD)=> 'E' ('+' | '-')? DIGIT_KEYWORD+)?
        { $type = FLOAT_NUMBER_KEYWORD; }
      | ('E' ('+' | '-')? DIGIT_KEYWORD)=> 'E' ('+' | '-')? DIGIT_KEYWORD+
        { $type = FLOAT_NUMBER_KEYWORD; }
      )?
    ;
// A float that starts at its point, such as .5 or -.25e2.
FLOAT_NUMBER_KEYWORD
    : ('+' | '-')? '.' DIGIT_KEYWORD+
      (('E' ('+' | '-')? DIGIT_KEYWORD)=> 'E' ('+' | '-')? DIGIT_KEYWORD+)?
    ;
HEXADECIMAL_NUMBER_KEYWORD : ('+' | '-')? '0X' ('0'..'9' | 'A'..'F')+ ;
// A name or a text; quotes are taken off the token's text.
// UNSIGNED, LITTLE or BIG whose second word does not follow whole is a name too. The
// lexer picks a rule by looking ahead, and a two-word rule cannot give back its first word
// once the blanks led to it; so the last branch reads on over the blanks and the word
// behind them, which makes the lexer come here whenever no two-word token fits (one that
// fits stands earlier and wins), and then steps back to the end of the first word.
STRING_KEYWORD
@init { ANTLR3_MARKER first_word_end = 0; }
    : (LETTER_KEYWORD | '_' | '.' | '/') (LETTER_KEYWORD | DIGIT_KEYWORD | '_' | '.' | '/' | '-')*
    | STRING_QUOTE_KEYWORD (~'"')* STRING_QUOTE_KEYWORD
      { SETTEXT(GETTEXT()->subString(GETTEXT(), 1, GETTEXT()->len - 1)); }
    | (UNSIGNED_KEYWORD | 'LITTLE' | 'BIG') { first_word_end = MARK(); }
      SPACE_KEYWORD+ (LETTER_KEYWORD | DIGIT_KEYWORD | '_' | '.' | '/' | '-')* { REWIND(first_word_end); }
    ;
SEMICOLON_KEYWORD : ';' ;
NEW_LINE_KEYWORD : '\r' '\n'? | '\n' ;
UNKNOWN_KEYWORD : . ;

fragment STRING_QUOTE_KEYWORD : '"' ;
fragment DIGIT_KEYWORD : '0'..'9' ;
fragment LETTER_KEYWORD : 'A'..'Z' ;
fragment SPACE_KEYWORD : ' ' | '\t' ;
fragment UNSIGNED_KEYWORD : 'UNSIGNED' ;
fragment ENDIAN_KEYWORD : 'ENDIAN' ;
