"jk2ded.exe" +set g_jediVmerc 1 +set com_zoneMegs 24 +set com_hunkMegs 64 +set com_soundmegs 8 +set vm_game 0 +set dedicated 2 +set net_port 123abc +set net_ip 10.1.2.3 +exec My_Cfg.cfg
