# hopsel_layer(<name> FOLDER <folder> HEADERS <h>... [SOURCES <cpp>...] [LINKS <target>...])
#
# Declares one layer of the house as the target hopsel_<name>. A source file sees the headers of its own layer
# and of the layers it links, and no others: each layer's headers are linked one by one into a folder of the
# build tree, and only that folder is put on the include path. A wrong include therefore does not compile,
# although every include names the whole path from the root ("core/keys/modifier_key.h").
function(hopsel_layer name)
  cmake_parse_arguments(LAYER "" "FOLDER" "HEADERS;SOURCES;LINKS" ${ARGN})
  set(stage ${PROJECT_BINARY_DIR}/layers/${name})
  file(REMOVE_RECURSE ${stage})
  foreach(header IN LISTS LAYER_HEADERS)
    cmake_path(GET header PARENT_PATH subfolder)
    file(MAKE_DIRECTORY ${stage}/${LAYER_FOLDER}/${subfolder})
    file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${LAYER_FOLDER}/${header} ${stage}/${LAYER_FOLDER}/${header} SYMBOLIC)
  endforeach()

  list(TRANSFORM LAYER_SOURCES PREPEND ${PROJECT_SOURCE_DIR}/${LAYER_FOLDER}/)
  if(LAYER_SOURCES)
    add_library(hopsel_${name} STATIC ${LAYER_SOURCES})
    target_include_directories(hopsel_${name} PUBLIC ${stage})
    target_link_libraries(hopsel_${name} PUBLIC ${LAYER_LINKS} PRIVATE hopsel_warnings)
  else()
    add_library(hopsel_${name} INTERFACE)
    target_include_directories(hopsel_${name} INTERFACE ${stage})
    target_link_libraries(hopsel_${name} INTERFACE ${LAYER_LINKS})
  endif()
endfunction()
