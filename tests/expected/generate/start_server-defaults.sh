#!/bin/sh
#############################################################
# File Created by: Arena Steward ver: JUNE 13 2002 beta 1.4
# File Created On: Thursday, June 13, 2002 at 9:05 PM
# arena.steward@example.org
#############################################################
# Remember to change the path below to point to your JK2 folder
# To run this file, open a terminal window and cd to the folder
# you copied this file to and type;
# sh start server.sh
#############################################################
cd /home/quillon/Star Wars JK II Jedi Outcast
./jk2ded +set fs_basepath ./ +set com_zoneMegs 16 +set com_hunkMegs 32 +set com_soundmegs 16 +set vm_game 2 +set vm_cgame 2 +set vm_ui 2 +set dedicated 2 +set ttycon 0 +set net_port 28070 +exec my_cfg.cfg
