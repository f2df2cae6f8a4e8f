# Makes the icons for dark windows from those for light ones: the same drawings in lighter colours. Run it by hand
# after a change to a drawing in zint/ (cmake -P makeDarkIcons.cmake); a new name also goes into icons.qrc, for both sets.

set(light_to_dark
  "#3a3f47" "#d4d8de" # lines
  "#1b6fb5" "#6db6f2" # what the icon is about
  "#2b7a3d" "#7cc887" # go
  "#b35c00" "#f2ae49" # warn
  "#b3261e" "#ef8379" # stop
)

set(here ${CMAKE_CURRENT_LIST_DIR})
file(GLOB drawings RELATIVE ${here}/zint ${here}/zint/scalable/actions/*.svg)
foreach(drawing IN LISTS drawings)
  file(READ ${here}/zint/${drawing} svg)
  set(colours ${light_to_dark})
  while(colours)
    list(POP_FRONT colours light dark)
    string(REPLACE ${light} ${dark} svg "${svg}")
  endwhile()
  file(WRITE ${here}/zint-dark/${drawing} "${svg}")
endforeach()
