/* The executors: one exported function per statement of the language. Lists and clauses
   arrive as nodes of the statement tree, flags as 0 (given) or -1 (left out). */
#ifndef ORMAK_EXECUTORS_H
#define ORMAK_EXECUTORS_H

#include <antlr3.h>
#include <hdf5.h>
#include "Ormak.h"

#ifdef __cplusplus
extern "C" {
#endif

/* File system. */
int ormak_create_directory(pANTLR3_BASE_TREE directory_list);
int ormak_create_file(pANTLR3_BASE_TREE file_list, int file_truncate, int file_parallel, int library_bounds,
                      int library_bound_low_value, int library_bound_high_value);
int ormak_rename_directory(pANTLR3_BASE_TREE directory_list, pANTLR3_BASE_TREE directory_new_list);
int ormak_rename_file(pANTLR3_BASE_TREE file_list, pANTLR3_BASE_TREE file_new_list, int file_truncate);
int ormak_copy_file(pANTLR3_BASE_TREE file_list, pANTLR3_BASE_TREE file_new_list, int file_truncate);
int ormak_drop_directory(pANTLR3_BASE_TREE directory_list);
int ormak_drop_file(pANTLR3_BASE_TREE file_list);
int ormak_use_directory(const char *directory_name);

/* Files in use. */
int ormak_use_file(pANTLR3_BASE_TREE file_list, int file_readonly, int atomic, int file_parallel, int library_bounds,
                   int library_bound_low_value, int library_bound_high_value, int cache, int cache_slots,
                   int cache_slots_value, int cache_size, int cache_size_value, int cache_preemption,
                   double cache_preemption_value);
int ormak_use_group(const char *group_name);
int ormak_close_file(pANTLR3_BASE_TREE file_list);
int ormak_close_all_file(void);
int ormak_close_group(void);

/* Groups and links. */
int ormak_create_group(pANTLR3_BASE_TREE group_list, int group_truncate, int object_order, int object_storage,
                       int object_max_compact, int object_min_dense, int attribute_order, int attribute_storage,
                       int attribute_max_compact, int attribute_min_dense);
int ormak_create_link(pANTLR3_BASE_TREE link_list, pANTLR3_BASE_TREE object_list, int link_type, int link_truncate);
int ormak_create_external_link(pANTLR3_BASE_TREE link_list, pANTLR3_BASE_TREE object_list, int link_truncate);

/* Datasets. Dimension lists hold -2 where the statement wrote a negative number; chunk lists
   hold -1 for a comma without a number before it. */
int ormak_create_dataset(pANTLR3_BASE_TREE dataset_list, int dataset_truncate, int storage_allocation, int data_type,
                         pANTLR3_BASE_TREE compound, int dataset_endianness, hsize_t *dataset_dimension_list,
                         int dataset_dimension_count, hsize_t *extendible_dimension_list, int dataset_extendible,
                         int char_set, const char *tag_value, pANTLR3_BASE_TREE fill_list, int fill_undefined,
                         int storage_type, hsize_t *storage_dimension_list, int storage_dimension_count,
                         int attribute_order, int attribute_storage, int attribute_max_compact,
                         int attribute_min_dense, int nbit, int nbit_precision, int nbit_offset, int scaleoffset,
                         int scaleoffset_value, int shuffle, int zlib, int zlib_level, int fletcher32,
                         pANTLR3_BASE_TREE data_list, pANTLR3_BASE_TREE input_redirecting, int programming_language);
/* Attributes on existing objects: the last component of each name is the attribute, all
   before it the object. Dimensions hold -2 where the statement wrote a negative number. */
int ormak_create_attribute(pANTLR3_BASE_TREE attribute_list, int attribute_truncate, int data_type,
                           pANTLR3_BASE_TREE compound, int attribute_endianness, hsize_t *attribute_dimension_list,
                           int attribute_dimension_count, int char_set, const char *tag_value,
                           pANTLR3_BASE_TREE data_list, pANTLR3_BASE_TREE input_redirecting, int programming_language);
/* The new dimensions keep their commas: a comma where a number could stand leaves that
   dimension as it is; "+n" and "-n" are taken against each dataset's current size. */
int ormak_alter_dimension(pANTLR3_BASE_TREE dataset_list, pANTLR3_BASE_TREE dimension_list);
/* Moves objects and attributes to new names in their file, pairs taken by position; an
   object_type other than -1 refuses sources of another kind. A new name ending in "/" means
   "into this group". */
int ormak_rename_object(pANTLR3_BASE_TREE object_list, pANTLR3_BASE_TREE object_new_list, int object_type,
                        int object_truncate);
/* Duplicates objects and attributes, within a file or into the file that a target names. */
int ormak_copy_object(pANTLR3_BASE_TREE object_list, pANTLR3_BASE_TREE object_new_list, int object_type,
                      int object_truncate);
/* Removes objects and attributes by name; a name written like a directory ("g/", ".", "..")
   means the contents of the group, which stays. With a null list: everything of object_type
   in the current group. */
int ormak_drop_object(pANTLR3_BASE_TREE object_list, int object_type);
/* Removes what a LIKE expression matches under object_name (or the current group), in
   file_name when given; deep_list is the DEEP clause or null. */
int ormak_drop_object_like(const char *file_name, const char *object_name, int object_type,
                           const char *regular_expression, pANTLR3_BASE_TREE deep_list);

/* Data. */
int ormak_insert(pANTLR3_BASE_TREE object_selection_list, int direct, int direct_mask, int direct_mask_value,
                 int direct_size, int direct_size_value, int object_parallel, int object_type,
                 pANTLR3_BASE_TREE data_list, pANTLR3_BASE_TREE input_redirecting, int programming_language);

int ormak_select(pANTLR3_BASE_TREE object_selection, int direct, int object_parallel, int object_type, int cache,
                 int cache_slots, int cache_slots_value, int cache_size, int cache_size_value, int cache_preemption,
                 double cache_preemption_value, pANTLR3_BASE_TREE post_processing_list,
                 pANTLR3_BASE_TREE output_redirecting, int programming_language);

/* SHOW statements. Each ends in the post-processing clause and the INTO clause (null when
   left out) and the caller's language; their values go to the cursor in use unless these
   clauses send them elsewhere. */
int ormak_show_use_directory(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                             int programming_language);
int ormak_show_use_file(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                        int programming_language);
int ormak_show_all_use_file(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                            int programming_language);
int ormak_show_use_group(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                         int programming_language);
int ormak_show_ormak_version(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                             int programming_language);
int ormak_show_hdf5_version(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                            int programming_language);
int ormak_show_pcre_version(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                            int programming_language);
int ormak_show_zlib_version(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                            int programming_language);
int ormak_show_mpi_version(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                           int programming_language);
int ormak_show_execute_status(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                              int programming_language);
int ormak_show_external_link_prefix(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                                    int programming_language);
int ormak_show_flush(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                     int programming_language);
int ormak_show_debug(pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                     int programming_language);
/* Listings of objects, as ORMAK_VARCHAR names. object_type -1 any, or 4, 8, 16, 32, 64;
   where_list is only traced; order_creation 0 lists in creation order where it is tracked.
   Without object_name, or with a name of contents ("g/", ".", "g/.."), the members of that
   group (or the attributes of that dataset); any other name answers with itself if such an
   object exists. */
int ormak_show_object(const char *file_object_name, const char *object_name, int object_type,
                      pANTLR3_BASE_TREE where_list, int order_creation, pANTLR3_BASE_TREE post_processing_list,
                      pANTLR3_BASE_TREE output_redirecting, int programming_language);
/* The paths, relative to object_name or the current group, that match a LIKE expression level
   by level; deep_list holds the depths of its "**" pieces. */
int ormak_show_object_like(const char *file_object_name, const char *object_name, int object_type,
                           const char *regular_expression, pANTLR3_BASE_TREE deep_list, pANTLR3_BASE_TREE where_list,
                           int order_creation, pANTLR3_BASE_TREE post_processing_list,
                           pANTLR3_BASE_TREE output_redirecting, int programming_language);
/* Directories or files of the working directory, of a path ending in "/" (or "\", ".", ".."),
   or one path confirmed; regular_expression and deep_list are only traced. */
int ormak_show_directory(const char *path_name, const char *regular_expression, pANTLR3_BASE_TREE deep_list,
                         pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                         int programming_language);
int ormak_show_file(const char *path_name, const char *regular_expression, pANTLR3_BASE_TREE deep_list,
                    pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                    int programming_language);
/* 0 for each valid HDF5 file of the list, -1 for any other regular file. */
int ormak_show_file_validity(pANTLR3_BASE_TREE file_list, pANTLR3_BASE_TREE post_processing_list,
                             pANTLR3_BASE_TREE output_redirecting, int programming_language);
/* object_type -1: the bounds for files to come, else those of the file in use;
   parameter_type -1 both, 0 the low, 1 the high bound. */
int ormak_show_library_bounds(int object_type, int parameter_type, pANTLR3_BASE_TREE post_processing_list,
                              pANTLR3_BASE_TREE output_redirecting, int programming_language);
/* object_type -1 the file in use, 2 files to come, 8 datasets to come; parameter_type -1
   all three as doubles, 0 slots, 1 size (ints), 2 preemption (a double). */
int ormak_show_cache(int object_type, int parameter_type, pANTLR3_BASE_TREE post_processing_list,
                     pANTLR3_BASE_TREE output_redirecting, int programming_language);
/* use_file 0: the file in use, opened for parallel operations; -1: files to come. */
int ormak_show_atomic(int use_file, pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting,
                      int programming_language);

/* Properties of objects, one value per "[file] name" item of the list; the first failing
   item ends the statement. object_type is -1 for any object, 8 for datasets, 16 for
   attributes (for SHOW ORDER, not -1 asks for the order of attributes). */
int ormak_show_type(pANTLR3_BASE_TREE object_list, pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting, int programming_language);
int ormak_show_data_type(pANTLR3_BASE_TREE object_list, int object_type, pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting, int programming_language);
int ormak_show_endianness(pANTLR3_BASE_TREE object_list, int object_type, pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting, int programming_language);
int ormak_show_charset(pANTLR3_BASE_TREE object_list, int object_type, pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting, int programming_language);
int ormak_show_tag(pANTLR3_BASE_TREE object_list, int object_type, pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting, int programming_language);
int ormak_show_size(pANTLR3_BASE_TREE object_list, int object_type, pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting, int programming_language);
int ormak_show_order(pANTLR3_BASE_TREE object_list, int object_type, pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting, int programming_language);
int ormak_show_storage_type(pANTLR3_BASE_TREE dataset_list, pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting, int programming_language);
int ormak_show_storage_allocation(pANTLR3_BASE_TREE dataset_list, pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting, int programming_language);
int ormak_show_fill_type(pANTLR3_BASE_TREE dataset_list, pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting, int programming_language);
/* Items with chunk numbers in child 2: the filter mask of that chunk. */
int ormak_show_mask(pANTLR3_BASE_TREE dataset_list, pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting, int programming_language);
/* One name: a value per dimension (dimension_type 0) or maximum dimension (1, unlimited
   as -1); the chunk dimensions, none when not chunked; the fill value in the dataset's own
   data type, none when undefined. */
int ormak_show_dimension(const char *file_object_name, const char *object_name, int object_type, int dimension_type,
                         pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting, int programming_language);
int ormak_show_storage_dimension(const char *file_dataset_name, const char *dataset_name, pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting, int programming_language);
int ormak_show_fill_value(const char *file_dataset_name, const char *dataset_name, pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting, int programming_language);
/* The size of each file of the list, or with null of the file in use. */
int ormak_show_file_size(pANTLR3_BASE_TREE file_list, pANTLR3_BASE_TREE post_processing_list, pANTLR3_BASE_TREE output_redirecting, int programming_language);

/* Session settings. */
int ormak_flush(int flush_type);
int _ormak_flush(int flush_type);
int ormak_set_library_bounds(int bound_low_value, int bound_high_value);
int ormak_set_cache(int object_type, int cache_slots, int cache_slots_value, int cache_size, int cache_size_value,
                    int cache_preemption, double cache_preemption_value);
int ormak_set_atomic(int use_file, int atomic_set);
int ormak_set_external_link_prefix(const char *prefix_value);
int ormak_set_flush(int flush_type, int flush_set);
int ormak_set_debug(int debug_set);

#ifdef __cplusplus
}
#endif

#endif
