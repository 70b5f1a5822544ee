"jk2ded.exe" +set com_zoneMegs 16 +set com_hunkMegs 32 +set com_soundmegs 16 +set vm_game 0 +set dedicated 2 +set net_port 28070 +exec My_Cfg.cfg
