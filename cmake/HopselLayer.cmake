# hopsel_layer(<name> FOLDER <folder> [SUBFOLDERS <folder>...] [MOC] [EXCEPT <file>...] [LINKS <target>...] [RESOURCES <qrc>...])
#
# Declares one room of the house as the target hopsel_<name>: every source and header in the folder, and in the
# subfolders that are named. A new file needs no entry here. MOC is for rooms with Q_OBJECT in them. Objective-C++ is
# compiled on Apple's systems only.
#
# With HOPSEL_STAGED_HEADERS a source file sees the headers of its own room and of the rooms that it links, and no
# others: each room's headers are linked one by one into a folder of the build tree, and only that folder is put on the
# include path. A wrong include does not compile then, although every include names the whole path from the root
# ("core/keys/modifier_key.h"). The sanitizers preset and CI build so; where people edit, the compiler sees the tree
# itself, so that an editor's "go to definition" leads to the real file.
function(hopsel_layer name)
  cmake_parse_arguments(LAYER "MOC" "FOLDER" "SUBFOLDERS;EXCEPT;LINKS;RESOURCES" ${ARGN})
  set(places ${LAYER_FOLDER})
  foreach(subfolder IN LISTS LAYER_SUBFOLDERS)
    list(APPEND places ${LAYER_FOLDER}/${subfolder})
  endforeach()
  set(headers "")
  set(sources "")
  foreach(place IN LISTS places)
    file(GLOB found CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}
      ${PROJECT_SOURCE_DIR}/${place}/*.h ${PROJECT_SOURCE_DIR}/${place}/*.def)
    list(APPEND headers ${found})
    file(GLOB found CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/${place}/*.cpp)
    list(APPEND sources ${found})
    if(APPLE)
      file(GLOB found CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/${place}/*.mm)
      list(APPEND sources ${found})
      list(TRANSFORM found PREPEND ${PROJECT_SOURCE_DIR}/)
      # A bridge between the languages' pointers can only be written as a C cast.
      set_property(SOURCE ${found} DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR} APPEND PROPERTY
        COMPILE_OPTIONS -fobjc-arc -Wno-old-style-cast)
    endif()
  endforeach()

  foreach(file IN LISTS LAYER_EXCEPT)
    list(REMOVE_ITEM sources ${LAYER_FOLDER}/${file})
  endforeach()

  set(seen ${PROJECT_SOURCE_DIR})
  if(HOPSEL_STAGED_HEADERS)
    set(seen ${PROJECT_BINARY_DIR}/layers/${name})
    file(REMOVE_RECURSE ${seen})
    foreach(header IN LISTS headers)
      cmake_path(GET header PARENT_PATH place)
      file(MAKE_DIRECTORY ${seen}/${place})
      file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${header} ${seen}/${header} SYMBOLIC)
    endforeach()
  endif()

  if(sources)
    list(TRANSFORM sources PREPEND ${PROJECT_SOURCE_DIR}/)
    list(TRANSFORM headers PREPEND ${PROJECT_SOURCE_DIR}/)
    add_library(hopsel_${name} STATIC ${sources} ${headers} ${LAYER_RESOURCES})
    target_include_directories(hopsel_${name} PUBLIC ${seen})
    target_link_libraries(hopsel_${name} PUBLIC ${LAYER_LINKS} PRIVATE hopsel_warnings)
    hopsel_precompile(hopsel_${name})
    if(LAYER_MOC)
      set_target_properties(hopsel_${name} PROPERTIES AUTOMOC ON)
    endif()
    if(LAYER_RESOURCES)
      set_target_properties(hopsel_${name} PROPERTIES AUTORCC ON)
    endif()
  else()
    add_library(hopsel_${name} INTERFACE)
    target_include_directories(hopsel_${name} INTERFACE ${seen})
    target_link_libraries(hopsel_${name} INTERFACE ${LAYER_LINKS})
  endif()
endfunction()
